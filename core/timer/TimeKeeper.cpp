#include "core/timer/TimeKeeper.h"

#include <algorithm>
#include <utility>

#include "core/output/Writable.h"

namespace Quenda {

TimeKeeper& TimeKeeper::Instance() {
    static TimeKeeper instance;
    return instance;
}

void TimeKeeper::AddTimer(TimerTkIntf* timer) {
    if (spare_.empty()) {
        queue_.emplace(timer->Expiry(), timer);
        return;
    }
    spare_.key() = timer->Expiry();
    spare_.mapped() = timer;
    queue_.insert(std::move(spare_));
}

void TimeKeeper::RemoveTimer(TimerTkIntf* timer) {
    const auto [first, last] = queue_.equal_range(timer->Expiry());
    const auto found =
        std::find_if(first, last, [timer](const auto& element) { return element.second == timer; });
    if (found != last) {
        spare_ = queue_.extract(found);
    }
}

TimeValue TimeKeeper::TimeToNext() const {
    return queue_.empty() ? TimeValue(-1, 0)
                          : queue_.begin()->second->TimeRemaining(TimeValue::Now());
}

void TimeKeeper::ProcessExpired() {
    if (!queue_.empty()) {
        ProcessExpired(TimeValue::Now());
    }
}

void TimeKeeper::ProcessExpired(TimeValue now) {
    while (!queue_.empty()) {
        TimerTkIntf* const timer = queue_.begin()->second;
        if (!timer->HasExpired(now)) {
            return;
        }
        // The timer leaves the queue first: its callback may stop, restart or destroy it.
        spare_ = queue_.extract(queue_.begin());
        timer->Expire(now);
        ++expiredCount_;
    }
}

void TimeKeeper::Dump(Writable* out) const {
    const TimeValue now = TimeValue::Now();
    out->Printf("%d Timers Expired\n", static_cast<int>(expiredCount_));
    out->Printf("%zu Active Timer(s)\n", queue_.size());
    for (const auto& [expiry, timer] : queue_) {
        out->Printf("%s -> %lli\n", timer->Name().Get(),
                    static_cast<long long>(timer->TimeRemaining(now).Milliseconds()));
    }
}

}  // namespace Quenda
