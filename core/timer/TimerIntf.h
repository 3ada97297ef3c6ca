// The faces of timers and of the timer manager: what each side may ask of the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "core/text/SharedText.h"
#include "core/timer/TimeValue.h"

namespace Quenda {

class TimeKeeper;
class TimerTkIntf;
class Writable;

// Timers by their expiry; those of the same expiry stand in the order in which they were armed.
using TimerQueue = std::multimap<TimeValue, TimerTkIntf*>;

// A timer, as the manager sees it.
class TimerTkIntf {
public:
    TimerTkIntf() = default;
    // A copy is not queued.
    TimerTkIntf(const TimerTkIntf& /*other*/) {}
    TimerTkIntf& operator=(const TimerTkIntf&) = delete;
    virtual ~TimerTkIntf() = default;
    // Zero when it has expired, never negative.
    virtual TimeValue TimeRemaining(const TimeValue& now) const = 0;
    // Must not change while the timer is queued: the manager finds it by this value.
    virtual const TimeValue& Expiry() const = 0;
    virtual bool HasExpired(const TimeValue& now) const = 0;
    // Called once when the timer is due, after it has left the queue: it may stop, restart or
    // destroy itself and others.
    virtual void Expire(const TimeValue& now) = 0;
    virtual SharedText Name() const = 0;

private:
    // A manager's note of where it has put this timer, so that it need not search for it: the only
    // data in an interface, for it belongs to the manager and has to be with the timer.
    friend class TimeKeeper;
    uint64_t keeper_ = 0;  // its number; 0 while the timer is not queued
    TimerQueue::iterator place_;
};

// The manager, as timers see it. It does not own them.
class TimerMgrIntf {
public:
    virtual ~TimerMgrIntf() = default;
    virtual void AddTimer(TimerTkIntf* timer) = 0;
    // Does nothing for a timer that is not queued under its present expiry.
    virtual void RemoveTimer(TimerTkIntf* timer) = 0;
};

// The manager, as the event loop sees it.
class TimeKeeperIntf {
public:
    virtual ~TimeKeeperIntf() = default;
    // The time until the first timer is due: zero when it is overdue, -1 s when there is none.
    virtual TimeValue TimeToNext() const = 0;
    // Fires every timer that is due.
    virtual void ProcessExpired() = 0;
    virtual bool IsEmpty() const = 0;
    // Of the timers in the queue: one whose callback runs right now is not among them.
    virtual size_t ActiveCount() const = 0;
    virtual void ResetExpiredCount() = 0;
    virtual void Dump(Writable* out) const = 0;
};

}  // namespace Quenda
