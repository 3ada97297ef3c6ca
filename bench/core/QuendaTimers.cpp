#include <deque>

#include "bench/core/TimerPeers.h"
#include "core/event/EventLoop.h"
#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"

namespace Bench {

namespace {

// Fires once, as the periodic one does it, but without being armed again.
class BenchTimer : public Quenda::PeriodicTimer {
public:
    BenchTimer(TimerKind kind, const Callback& callback)
        : PeriodicTimer("bench", callback), kind_(kind) {
        // The only way to a period; the timer is idle again at once.
        Start(kPeriodMs, kPeriodMs);
        Stop();
    }

    void Expire(const Quenda::TimeValue& now) override {
        if (kind_ == TimerKind::kPeriodic) {
            PeriodicTimer::Expire(now);
        } else {
            (void)CallBack(now);
        }
    }

private:
    TimerKind kind_;
};

class Set : public TimerSet {
public:
    Set(size_t count, TimerKind kind) : callback_(Quenda::MakeCallback(this, &Set::Count)) {
        (void)loop_.Init();
        for (size_t i = 0; i < count; ++i) {
            timers_.emplace_back(kind, callback_);
        }
    }

    void Refresh() override { start_ = Quenda::TimeValue::Now(); }
    void Arm(size_t timer, uint32_t milliseconds) override {
        Quenda::TimeValue expiry = start_;
        expiry.AddMilliseconds(milliseconds);
        timers_[timer].StartAt(expiry);
    }
    void Cancel(size_t timer) override { timers_[timer].Stop(); }
    void Turn() override {
        (void)loop_.Poll();
        static_cast<Quenda::TimeKeeperIntf&>(Quenda::TimeKeeper::Instance()).ProcessExpired();
    }

private:
    void Count(unsigned int, void*) { ++fired; }

    Quenda::EventLoop loop_;
    Quenda::TimerBase::Callback callback_;
    Quenda::TimeValue start_;
    std::deque<BenchTimer> timers_;
};

}  // namespace

std::unique_ptr<TimerSet> QuendaTimers(size_t count, TimerKind kind) {
    return std::make_unique<Set>(count, kind);
}

}  // namespace Bench
