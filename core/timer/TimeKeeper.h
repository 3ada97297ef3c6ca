#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "core/timer/TimerIntf.h"

namespace Quenda {

// The process's timer manager. It keeps all armed timers by expiry; timers with the same expiry
// fire in the order in which they were armed. Arming and removing take logarithmic time.
class TimeKeeper : public TimerMgrIntf, public TimeKeeperIntf {
public:
    // The process's manager, built on first use and destroyed at exit.
    static TimeKeeper& Instance();

    TimeKeeper() = default;
    TimeKeeper(const TimeKeeper&) = delete;
    TimeKeeper& operator=(const TimeKeeper&) = delete;

    void AddTimer(TimerTkIntf* timer) override;
    void RemoveTimer(TimerTkIntf* timer) override;

    TimeValue TimeToNext() const override;
    void ProcessExpired() override;
    // The same at a given time. `now` does not advance during the pass: a timer that is armed again
    // for a time up to `now` fires again in this pass.
    void ProcessExpired(TimeValue now);
    bool IsEmpty() const override { return queue_.empty(); }
    size_t ActiveCount() const override { return queue_.size(); }
    void ResetExpiredCount() override { expiredCount_ = 0; }
    void Dump(Writable* out) const override;

private:
    using Queue = std::multimap<TimeValue, TimerTkIntf*>;

    uint32_t expiredCount_ = 0;
    Queue queue_;
    // The node of the last timer that left the queue. The next armed timer uses it, so that the
    // heartbeat is armed again even without free memory.
    Queue::node_type spare_;
};

}  // namespace Quenda
