#pragma once

#include <cstdint>

#include "heartbeat/HeartbeatTimerBase.h"

namespace Quenda {

// Reads the application's heartbeat file once per timeout and keeps the last two counts, so that
// its owner can tell progress from silence.
//
// The file's first 4 bytes are one unsigned 32-bit counter in the machine's byte order; 0 means
// that the application declares an error. The file is opened for every check and closed again: a
// file that the application replaces is followed, and no descriptor stays open between checks.
class HeartbeatReadTimer : public HeartbeatTimerBase {
public:
    HeartbeatReadTimer();

    // Called after each timed check, with true when the file was read whole. Keeps a reference to
    // the callback and releases the one before it.
    void SetResultCallback(const CallbackRef1<bool>& callback);
    void ClearResultCallback();

    bool Stop() override;
    // True when the last two counts are equal. That also holds before the first check and after a
    // failed one: ask only when the check itself succeeded.
    bool HeartbeatMissed() const override { return previousCount_ == lastCount_; }
    bool Open(const char* caller) override;
    void OnTimeout(unsigned int monotonicMs, void* out) override;

    // Closes the file for the operation named `caller`. After a failure it still counts as open.
    bool Close(const char* caller);
    // One check: false when the file could not be opened, read whole or closed.
    bool Read();

    uint32_t GetPreviousCount() const { return previousCount_; }

private:
    uint32_t previousCount_ = 0;
    CallbackRef1<bool> resultCallback_;
};

}  // namespace Quenda
