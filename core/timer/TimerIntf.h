// Interfaces of timers and of the timer manager.
#pragma once

#include <cstddef>

#include "core/text/SharedText.h"
#include "core/timer/TimeValue.h"

namespace Quenda {

class Writable;

// A timer, as the manager sees it.
class TimerTkIntf {
public:
    virtual ~TimerTkIntf() = default;
    // Zero when it has expired, never negative.
    virtual TimeValue TimeRemaining(const TimeValue& now) const = 0;
    // Must not change while the timer is queued: the manager finds it by this value.
    virtual const TimeValue& Expiry() const = 0;
    virtual bool HasExpired(const TimeValue& now) const = 0;
    // Called once when the timer is due, after it has left the queue. It may stop, restart or
    // destroy this timer and others.
    virtual void Expire(const TimeValue& now) = 0;
    virtual SharedText Name() const = 0;
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
    // The number of timers in the queue. A timer whose callback is running is not in the queue.
    virtual size_t ActiveCount() const = 0;
    virtual void ResetExpiredCount() = 0;
    virtual void Dump(Writable* out) const = 0;
};

}  // namespace Quenda
