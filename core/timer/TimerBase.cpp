#include "core/timer/TimerBase.h"

#include <utility>

#include "core/timer/TimeKeeper.h"

namespace Quenda {

TimerBase::TimerBase(SharedText name, Callback callback)
    : name_(std::move(name)),
      manager_(&TimeKeeper::Instance()),
      callback_(std::move(callback)),
      self_(this, [](TimerBase*) {}) {}

TimerBase::~TimerBase() {
    Stop();
}

void TimerBase::StartAt(const TimeValue& expiry) {
    // The manager finds a queued timer by its expiry, so the timer leaves the queue before that
    // changes. `expiry` may be a reference to this timer's own, so it is copied first.
    const TimeValue next = expiry;
    if (active_) {
        manager_->RemoveTimer(this);
    }
    expiry_ = next;
    manager_->AddTimer(this);
    active_ = true;
}

void TimerBase::Stop() {
    if (active_) {
        manager_->RemoveTimer(this);
        active_ = false;
    }
}

TimeValue TimerBase::TimeRemaining(const TimeValue& now) const {
    return HasExpired(now) ? TimeValue() : expiry_ - now;
}

bool TimerBase::InvokeCallback(const TimeValue& now) {
    if (!callback_) {
        return true;
    }
    // The callback may destroy this timer, but its own object must survive the call.
    const Callback callback = callback_;
    const std::weak_ptr<TimerBase> self = self_;
    callback->Invoke(static_cast<unsigned int>(now.Milliseconds()), userData_);
    return !self.expired();
}

}  // namespace Quenda
