#include "heartbeat/HeartbeatReadTimer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "core/log/Log.h"
#include "core/options/OptionsNode.h"

namespace Quenda {

namespace {

// The order of the options, which the getters address by position.
constexpr size_t kFilename = 0;
constexpr size_t kTimeout = 1;

constexpr int kDefaultTimeoutSeconds = 10;
constexpr uint32_t kLongestTimeoutSeconds = UINT32_MAX / 1000;  // its milliseconds fit in 32 bits

}  // namespace

HeartbeatTimerBase::HeartbeatTimerBase(const char* name)
    : name_(name),
      options_({
          ValueDefinition::Text("heartbeat_filename", "/var/run/quenda/keldra.heartbeat"),
          ValueDefinition::Int("heartbeat_timeout_sec", kDefaultTimeoutSeconds),
      }),
      timer_("heartbeat", MakeCallback(this, &HeartbeatTimerBase::OnTimeout)) {
    options_.EnableHistory(true);
}

HeartbeatTimerBase::~HeartbeatTimerBase() {
    // Not the virtual one: the derived object no longer exists.
    (void)HeartbeatTimerBase::Stop();
}

bool HeartbeatTimerBase::Start() {
    if (IsActive()) {
        LogMessage(0, "%s: %s: Failed to start the timer because it is already active\n", name_,
                   "Start");
        return false;
    }
    Arm();
    return true;
}

void HeartbeatTimerBase::Arm() {
    // Deliberately wraps at 32 bits: from 4294968 seconds on, the period is shorter than the
    // timeout.
    timer_.Start(GetTimeout() * 1000U);
}

bool HeartbeatTimerBase::Stop() {
    if (!IsActive()) {
        return false;
    }
    timer_.Stop();
    if (fd_ != -1) {
        if (close(fd_) == -1) {
            LogMessage(0,
                       "%s: %s: Failed to close the file handle (%d) to the heartbeat file %s: "
                       "%s\n",
                       name_, "Stop", fd_, GetFilename(), strerror(errno));
        }
        fd_ = -1;
    }
    lastCount_ = 0;
    return true;
}

bool HeartbeatTimerBase::Reload(const OptionsNode& newOptions) {
    const std::string text = newOptions.GetCompactText().Get();
    if (text == appliedOptions_) {
        return true;
    }
    const bool wasActive = IsActive();
    if (wasActive && !Stop()) {
        LogMessage(0, "%s: %s: Failed to stop the heartbeat timer!\n", name_, "Reload");
        return false;
    }
    options_.Reset();
    if (!options_.Load(newOptions)) {
        LogMessage(0, "%s: %s: Failed to load new options\n", name_, "Reload");
        return RejectOptions();
    }
    const int32_t timeout = options_.At(kTimeout).AsInt();
    if (timeout <= 0) {
        LogMessage(0, "%s: %s: Heartbeat timeout must be a positive integer: %d\n", name_, "Reload",
                   timeout);
        return RejectOptions();
    }
    // Deliberately never true, since the multiplication wraps: longer timeouts are accepted, and
    // their period wraps.
    if (static_cast<uint32_t>(timeout) * 1000U / 1000U > kLongestTimeoutSeconds) {
        LogMessage(0, "%s: %s: Heartbeat timeout may be no longer than %u seconds: %d\n", name_,
                   "Reload", kLongestTimeoutSeconds, timeout);
        return RejectOptions();
    }
    appliedOptions_ = text;
    if (wasActive && !Start()) {
        LogMessage(0, "%s: %s: Failed to restart the heartbeat timer!\n", name_, "Reload");
        return false;
    }
    return true;
}

bool HeartbeatTimerBase::RejectOptions() {
    options_.Reset();
    appliedOptions_.clear();
    return false;
}

bool HeartbeatTimerBase::IsActive() const {
    return fd_ != -1 || timer_.IsActive();
}

bool HeartbeatTimerBase::CheckNow() {
    if (!IsActive()) {
        return false;
    }
    bool result = false;
    timer_.Stop();
    OnTimeout(0, &result);
    Arm();
    return result;
}

const char* HeartbeatTimerBase::GetFilename() const {
    return options_.At(kFilename).AsText();
}

uint32_t HeartbeatTimerBase::GetTimeout() const {
    return static_cast<uint32_t>(options_.At(kTimeout).AsInt());
}

uint32_t HeartbeatTimerBase::GetSecondsToNextCheck() const {
    if (!timer_.IsActive()) {
        return 0;
    }
    // Negative if the check is overdue because the one before it still waits for a command.
    const TimeValue remaining = timer_.Expiry() - TimeValue::Now();
    return remaining.Seconds() < 0 ? 0 : static_cast<uint32_t>(remaining.Seconds());
}

HeartbeatReadTimer::HeartbeatReadTimer() : HeartbeatTimerBase("HeartbeatReadTimer") {}

void HeartbeatReadTimer::SetResultCallback(const CallbackRef1<bool>& callback) {
    resultCallback_ = callback;
}

void HeartbeatReadTimer::ClearResultCallback() {
    resultCallback_.Release();
}

bool HeartbeatReadTimer::Stop() {
    if (!HeartbeatTimerBase::Stop()) {
        return false;
    }
    previousCount_ = lastCount_;
    return true;
}

bool HeartbeatReadTimer::Open(const char* caller) {
    if (fd_ != -1) {
        LogMessage(0,
                   "%s: %s: Refusing to open the heartbeat file %s for reading because it is "
                   "already open: %d\n",
                   name_, caller, GetFilename(), fd_);
        return false;
    }
    // Non-blocking: a pipe in the file's place must not stop the monitor. O_SYNC and the mode have
    // no effect on a read. They are kept so that system-call traces of old and new terminals agree.
    fd_ = open(GetFilename(), O_RDONLY | O_NONBLOCK | O_SYNC, 0500);
    if (fd_ == -1) {
        LogMessage(0, "%s: %s: Failed to open the heartbeat file %s for reading: %s\n", name_,
                   caller, GetFilename(), strerror(errno));
        return false;
    }
    return true;
}

bool HeartbeatReadTimer::Close(const char* caller) {
    if (close(fd_) == -1) {
        LogMessage(0, "%s: %s: Failed to close the heartbeat file %s: %s\n", name_, caller,
                   GetFilename(), strerror(errno));
        return false;
    }
    fd_ = -1;
    return true;
}

bool HeartbeatReadTimer::Read() {
    constexpr const char* kCaller = "Read";
    if (!Open(kCaller)) {
        return false;
    }
    previousCount_ = lastCount_;
    uint32_t count = 0;
    // The kernel reports no error for a short read. The text is then "Success", and not the error
    // of an earlier call.
    errno = 0;
    if (read(fd_, &count, sizeof(count)) != ssize_t{sizeof(count)}) {
        LogMessage(0, "%s: %s: Failed to read from the heartbeat file %s: %s\n", name_, kCaller,
                   GetFilename(), strerror(errno));
        (void)Close(kCaller);
        return false;
    }
    lastCount_ = count;
    return Close(kCaller);
}

void HeartbeatReadTimer::OnTimeout(unsigned int /*monotonicMs*/, void* out) {
    const bool result = Read();
    if (out != nullptr) {
        *static_cast<bool*>(out) = result;
    } else if (resultCallback_) {
        // This handle keeps the callback alive if it replaces itself.
        const CallbackRef1<bool> callback = resultCallback_;
        callback->Invoke(result);
    }
}

}  // namespace Quenda
