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

// Looks out, as long as it lives, for the end of the timer that has the slot: also while a callback
// throws, and within the watch of an outer call.
class TimerBase::DestructionWatch {
public:
    explicit DestructionWatch(bool** slot)
        : slot_(slot), outer_(std::exchange(*slot, &destroyed_)) {}
    DestructionWatch(const DestructionWatch&) = delete;
    DestructionWatch& operator=(const DestructionWatch&) = delete;
    ~DestructionWatch() {
        if (!destroyed_) {
            *slot_ = outer_;
        } else if (outer_ != nullptr) {
            *outer_ = true;
        }
    }

    bool Destroyed() const { return destroyed_; }

private:
    bool** const slot_;
    bool* const outer_;
    bool destroyed_ = false;
};

bool TimerBase::CallBack(const TimeValue& now) {
    if (!callback_) {
        return true;
    }
    // Kept here, too: the callback object outlives its own invocation.
    const Callback callback = callback_;
    const DestructionWatch watch(&destroyed_);
    callback->Invoke(static_cast<unsigned int>(now.Milliseconds()), userData_);
    return !watch.Destroyed();
}

}  // namespace Quenda
