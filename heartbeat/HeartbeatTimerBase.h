#pragma once

#include <cstdint>
#include <string>

#include "core/callback/Callback.h"
#include "core/timer/PeriodicTimer.h"
#include "core/values/ValueList.h"

namespace Quenda {

class OptionsNode;

// The core of a periodic heartbeat check: its options, its timer and the descriptor of the
// heartbeat file. What a check does is for the derived class to say.
//
// Options: "heartbeat_filename" (text) and "heartbeat_timeout_sec" (integer seconds, above 0).
// The period of the check is the timeout; the first check comes after a random delay below half
// of it. Failures are logged, each line beginning with the object's name and the operation.
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
    // Applies new options; options equal to the last applied ones change nothing, not even the
    // timer. An active timer is restarted. After a failure the timer is stopped, and the same
    // options are not skipped the next time.
    virtual bool Reload(const OptionsNode& newOptions);
    // Whether the timer is armed or the file is open.
    virtual bool IsActive() const;
    virtual bool HeartbeatMissed() const { return lastCount_ != 0; }
    // Runs one check at once, restarts the period, and returns the check's result. False, without
    // a check, when the timer is not active.
    virtual bool CheckNow();
    // Opens the heartbeat file for the operation named `caller`.
    virtual bool Open(const char* caller) = 0;
    // One check: for the timer when `out` is null, otherwise with a bool at `out` for its result.
    virtual void OnTimeout(unsigned int monotonicMs, void* out) = 0;

    const char* GetFilename() const;
    uint32_t GetTimeout() const;  // seconds
    uint32_t GetLastCount() const { return lastCount_; }
    // The application declares an error by a count of 0.
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

}  // namespace Quenda
