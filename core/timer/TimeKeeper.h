#pragma once

#include <cstdint>

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
    TimerQueue::iterator Insert(TimerTkIntf* timer);
    void TakeOut(TimerQueue::iterator place);

    uint32_t expiredCount_ = 0;
    TimerQueue queue_;
    // The last element taken out of the queue, kept for the next timer that is armed: a timer
    // that is re-armed costs no allocation.
    TimerQueue::node_type spare_;
    // Elements without a note in their timer, because it was queued already, here or in another
    // manager. None of ours is; only while there are any, timers are searched for.
    size_t unplaced_ = 0;
    // Tells this manager's notes from those of others, also of one that is gone.
    inline static uint64_t lastNumber_ = 0;
    const uint64_t number_ = ++lastNumber_;
};

}  // namespace Quenda
