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
    const auto place = Insert(timer);
    if (timer->keeper_ == 0) {
        timer->keeper_ = number_;
        timer->place_ = place;
    } else {
        ++unplaced_;
    }
}

// Most timers are armed for one period on, after all others: looks there first. Among equal
// expiries, too, a timer comes last.
TimerQueue::iterator TimeKeeper::Insert(TimerTkIntf* timer) {
    if (spare_.empty()) {
        return queue_.emplace_hint(queue_.end(), timer->Expiry(), timer);
    }
    spare_.key() = timer->Expiry();
    spare_.mapped() = timer;
    return queue_.insert(queue_.end(), std::move(spare_));
}

void TimeKeeper::RemoveTimer(TimerTkIntf* timer) {
    if (unplaced_ == 0) {
        if (timer->keeper_ == number_ && timer->place_->first == timer->Expiry()) {
            TakeOut(timer->place_);
        }
        return;
    }
    const auto [first, last] = queue_.equal_range(timer->Expiry());
    const auto found =
        std::find_if(first, last, [timer](const auto& element) { return element.second == timer; });
    if (found != last) {
        TakeOut(found);
    }
}

void TimeKeeper::TakeOut(TimerQueue::iterator place) {
    TimerTkIntf* const timer = place->second;
    if (timer->keeper_ == number_) {
        // The note may be of another element of this timer: that one is then unplaced, and the
        // count stays.
        timer->keeper_ = 0;
    } else {
        --unplaced_;
    }
    spare_ = queue_.extract(place);
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
        // Out of the queue before it runs: the callback may do anything to its own timer.
        TakeOut(queue_.begin());
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
