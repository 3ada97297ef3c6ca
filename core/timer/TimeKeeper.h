#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "core/timer/TimerIntf.h"

namespace Quenda {

// The process's timer manager: all armed timers, ordered by expiry; timers with the same expiry
// fire in the order in which they were armed. Arming and removing are logarithmic.
class TimeKeeper : public TimerMgrIntf, public TimeKeeperIntf {
public:
    // The process's one manager, built on first use and destroyed at exit.
    static TimeKeeper& Instance();

    TimeKeeper() = default;
    TimeKeeper(const TimeKeeper&) = delete;
    TimeKeeper& operator=(const TimeKeeper&) = delete;

    void AddTimer(TimerTkIntf* timer) override;
    void RemoveTimer(TimerTkIntf* timer) override;

    TimeValue TimeToNext() const override;
    void ProcessExpired() override;
    // The same at a given time. `now` stays the same for the whole pass: a timer re-armed to a
    // time that is not after it fires again in this pass.
    void ProcessExpired(TimeValue now);
    bool IsEmpty() const override { return queue_.empty(); }
    size_t ActiveCount() const override { return queue_.size(); }
    void ResetExpiredCount() override { expiredCount_ = 0; }
    void Dump(Writable* out) const override;

private:
    using Queue = std::multimap<TimeValue, TimerTkIntf*>;

    uint32_t expiredCount_ = 0;
    Queue queue_;
    // The last node taken out of the queue, kept for the next timer to be armed: the heartbeat is
    // re-armed also when no memory can be had.
    Queue::node_type spare_;
};

}  // namespace Quenda
