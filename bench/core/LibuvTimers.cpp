#include <uv.h>

#include <vector>

#include "bench/core/TimerPeers.h"

namespace Bench {

namespace {

class Set : public TimerSet {
public:
    Set(size_t count, TimerKind kind)
        : repeatMs_(kind == TimerKind::kPeriodic ? kPeriodMs : 0), timers_(count) {
        (void)uv_loop_init(&loop_);
        for (uv_timer_t& timer : timers_) {
            (void)uv_timer_init(&loop_, &timer);
            timer.data = this;
        }
    }
    ~Set() override {
        for (uv_timer_t& timer : timers_) {
            uv_close(reinterpret_cast<uv_handle_t*>(&timer), nullptr);
        }
        (void)uv_run(&loop_, UV_RUN_DEFAULT);
        (void)uv_loop_close(&loop_);
    }

    void Refresh() override { uv_update_time(&loop_); }
    void Arm(size_t timer, uint32_t milliseconds) override {
        (void)uv_timer_start(&timers_[timer], Fire, milliseconds, repeatMs_);
    }
    void Cancel(size_t timer) override { (void)uv_timer_stop(&timers_[timer]); }
    void Turn() override { (void)uv_run(&loop_, UV_RUN_NOWAIT); }

private:
    static void Fire(uv_timer_t* timer) { ++static_cast<Set*>(timer->data)->fired; }

    uv_loop_t loop_{};
    uint32_t repeatMs_;
    std::vector<uv_timer_t> timers_;
};

}  // namespace

std::unique_ptr<TimerSet> LibuvTimers(size_t count, TimerKind kind) {
    return std::make_unique<Set>(count, kind);
}

}  // namespace Bench
