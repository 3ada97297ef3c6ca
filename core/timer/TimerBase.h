#pragma once

#include <memory>

#include "core/callback/Callback.h"
#include "core/timer/TimerIntf.h"

namespace Quenda {

// A timer on the process's TimeKeeper. It is idle, armed until its expiry, or active after it has
// fired: it leaves the queue then, but is active until it is stopped. Destroying it stops it. A
// derived class defines what happens at the expiry.
//
// The callback gets the monotonic time in milliseconds, truncated to 32 bits, and the user data.
class TimerBase : public TimerTkIntf {
public:
    using Callback = CallbackRef2<unsigned int, void*>;

    explicit TimerBase(SharedText name, Callback callback = Callback());
    TimerBase(const TimerBase&) = delete;
    TimerBase& operator=(const TimerBase&) = delete;
    ~TimerBase() override;

    void StartAt(const TimeValue& expiry);
    void Stop();
    bool IsActive() const { return active_; }

    // Handed to the callback; null at first. Not owned.
    void SetUserData(void* userData) { userData_ = userData; }

    TimeValue TimeRemaining(const TimeValue& now) const override;
    const TimeValue& Expiry() const override { return expiry_; }
    bool HasExpired(const TimeValue& now) const override { return now >= expiry_; }
    SharedText Name() const override { return name_; }

protected:
    // For `Expire`: calls the callback, if there is one. False when the callback destroyed this
    // timer, which must not be touched any more.
    bool InvokeCallback(const TimeValue& now);

private:
    SharedText name_;
    TimeValue expiry_;
    TimerMgrIntf* manager_;
    bool active_ = false;
    void* userData_ = nullptr;
    Callback callback_;
    // Owns nothing: its deleter is empty. A weak reference to it tells whether the timer still
    // exists.
    std::shared_ptr<TimerBase> self_;
};

}  // namespace Quenda
