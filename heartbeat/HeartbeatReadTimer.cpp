#include "heartbeat/HeartbeatReadTimer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "core/log/Log.h"

namespace Quenda {

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
    // no effect on a read; they are kept so that a system-call trace looks as it always has.
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
    // A short read is no error to the kernel: the text then says "Success", not whatever an
    // earlier call left behind.
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
        // Through a handle of its own: the callback may replace itself.
        const CallbackRef1<bool> callback = resultCallback_;
        callback->Invoke(result);
    }
}

}  // namespace Quenda
