#pragma once

#include <cstdint>
#include <string>

#include "core/callback/Callback.h"
#include "core/timer/PeriodicTimer.h"
#include "core/values/ValueList.h"

namespace Quenda {

class OptionsNode;

// The core of a periodic heartbeat check: its options, its timer and the descriptor of the
// heartbeat file. The derived class defines the check itself.
//
// Options: "heartbeat_filename" (text) and "heartbeat_timeout_sec" (integer seconds, above 0).
// The period of the check is the timeout; the first check comes after a random delay below half
// of it. Failures are logged; each line starts with the object's name and the operation.
class HeartbeatTimerBase {
public:
    // `name` is kept, not copied.
    explicit HeartbeatTimerBase(const char* name);
    HeartbeatTimerBase(const HeartbeatTimerBase&) = delete;
    HeartbeatTimerBase& operator=(const HeartbeatTimerBase&) = delete;
    virtual ~HeartbeatTimerBase();

    // False when the timer is active already.
    virtual bool Start();
    // Stops the timer, closes the file and forgets the count. False when nothing was active.
    virtual bool Stop();
    // Applies new options and restarts an active timer. Options equal to the last applied ones
    // change nothing, not even the timer. After a failure the timer is stopped, and even the same
    // options are applied the next time.
    virtual bool Reload(const OptionsNode& newOptions);
    // Whether the timer is armed or the file is open.
    virtual bool IsActive() const;
    virtual bool HeartbeatMissed() const { return lastCount_ != 0; }
    // Runs one check at once, restarts the period, and returns the check's result. False, without
    // a check, when the timer is not active.
    virtual bool CheckNow();
    // Opens the heartbeat file for the operation named `caller`.
    virtual bool Open(const char* caller) = 0;
    // One check. `out` is null when the timer calls, and otherwise points to a bool for the result.
    virtual void OnTimeout(unsigned int monotonicMs, void* out) = 0;

    const char* GetFilename() const;
    uint32_t GetTimeout() const;  // seconds
    uint32_t GetLastCount() const { return lastCount_; }
    // The application reports an error by a count of 0.
    bool InErrorState() const { return lastCount_ == 0; }
    // Whole seconds; 0 when the timer is not armed, and while a check is overdue.
    uint32_t GetSecondsToNextCheck() const;

protected:
    const char* name_;
    int fd_ = -1;  // -1 while the file is not open
    uint32_t lastCount_ = 0;

private:
    // Resets the options and forgets which were applied. Returns false for the caller to return.
    bool RejectOptions();
    void Arm();

    ValueList options_;
    PeriodicTimer timer_;
    std::string appliedOptions_;
};

// Reads the application's heartbeat file once per timeout and keeps the last two counts: if they
// differ, the application is alive.
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
    // True when the last two counts are equal. They also are before the first check and after a
    // failed one, so ask only after a check that succeeded.
    bool HeartbeatMissed() const override { return previousCount_ == lastCount_; }
    bool Open(const char* caller) override;
    void OnTimeout(unsigned int monotonicMs, void* out) override;

    // Closes the file for the operation named `caller`. After a failure it still counts as open,
    // and later checks fail.
    bool Close(const char* caller);
    // One check: false when the file could not be opened, read whole or closed.
    bool Read();

    uint32_t GetPreviousCount() const { return previousCount_; }

private:
    uint32_t previousCount_ = 0;
    CallbackRef1<bool> resultCallback_;
};

}  // namespace Quenda
