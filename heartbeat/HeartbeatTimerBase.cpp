#include "heartbeat/HeartbeatTimerBase.h"

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
    // This class's own, as the derived part is gone.
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
    // Wraps at 32 bits: a timeout of 4294968 seconds and more becomes a shorter period.
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
    // Compared in milliseconds of 32 bits, which are never more than the limit's: the test never
    // holds, on purpose. Longer timeouts are accepted and their period wraps.
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
    // Overdue while a check before it still waits for a command.
    const TimeValue remaining = timer_.Expiry() - TimeValue::Now();
    return remaining.Seconds() < 0 ? 0 : static_cast<uint32_t>(remaining.Seconds());
}

}  // namespace Quenda
