#include "core/timer/TimerBase.h"

#include <utility>

#include "core/timer/TimeKeeper.h"

namespace Quenda {

TimerBase::TimerBase(SharedText name, Callback callback)
    : name_(std::move(name)), manager_(&TimeKeeper::Instance()), callback_(std::move(callback)) {}

TimerBase::~TimerBase() {
    Stop();
    if (destroyed_ != nullptr) {
        *destroyed_ = true;
    }
}

void TimerBase::StartAt(const TimeValue& expiry) {
    // The manager finds a queued timer by its expiry, so it leaves the queue before that changes.
    // A copy, because `expiry` may be this timer's own.
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

bool TimerBase::CallBack(const TimeValue& now) {
    if (!callback_) {
        return true;
    }
    bool destroyed = false;
    bool* const outer = std::exchange(destroyed_, &destroyed);
    // Kept here, too: the callback object outlives its own invocation.
    const Callback callback = callback_;
    callback->Invoke(static_cast<unsigned int>(now.Milliseconds()), userData_);
    if (!destroyed) {
        destroyed_ = outer;
    } else if (outer != nullptr) {
        *outer = true;
    }
    return !destroyed;
}

}  // namespace Quenda
