#include <event2/event.h>
#include <event2/event_struct.h>

#include <vector>

#include "bench/core/TimerPeers.h"

namespace Bench {

namespace {

class Set : public TimerSet {
public:
    Set(size_t count, TimerKind kind) : base_(event_base_new()), timers_(count) {
        for (Timer& timer : timers_) {
            timer.owner = this;
            (void)evtimer_assign(&timer.event, base_, kind == TimerKind::kOnce ? Fire : FireAndArm,
                                 &timer);
        }
    }
    ~Set() override {
        for (Timer& timer : timers_) {
            (void)evtimer_del(&timer.event);
        }
        event_base_free(base_);
    }

    void Refresh() override {}
    void Arm(size_t timer, uint32_t milliseconds) override { Add(timers_[timer], milliseconds); }
    void Cancel(size_t timer) override { (void)evtimer_del(&timers_[timer].event); }
    void Turn() override { (void)event_base_loop(base_, EVLOOP_NONBLOCK); }

private:
    struct Timer {
        ::event event;
        Set* owner;
    };

    static void Add(Timer& timer, uint32_t milliseconds) {
        const timeval wait = {milliseconds / 1000,
                              static_cast<suseconds_t>(milliseconds % 1000) * 1000};
        (void)evtimer_add(&timer.event, &wait);
    }
    static void Fire(evutil_socket_t, short, void* timer) {
        ++static_cast<Timer*>(timer)->owner->fired;
    }
    // Its own periodic events have the same first wait and period.
    static void FireAndArm(evutil_socket_t, short, void* timer) {
        ++static_cast<Timer*>(timer)->owner->fired;
        Add(*static_cast<Timer*>(timer), kPeriodMs);
    }

    event_base* base_;
    std::vector<Timer> timers_;
};

}  // namespace

std::unique_ptr<TimerSet> LibeventTimers(size_t count, TimerKind kind) {
    return std::make_unique<Set>(count, kind);
}

}  // namespace Bench
