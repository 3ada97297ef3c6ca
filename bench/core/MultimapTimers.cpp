#include <chrono>
#include <map>
#include <vector>

#include "bench/core/TimerPeers.h"

namespace Bench {

namespace {

// The least that timers in a multimap can cost: numbers by their milliseconds, each with its place
// in the queue, and no element allocated anew. No objects, no callbacks.
class Set : public TimerSet {
public:
    Set(size_t count, TimerKind kind)
        : isPeriodic_(kind == TimerKind::kPeriodic), places_(count, queue_.end()) {}

    void Refresh() override { now_ = Now(); }
    void Arm(size_t timer, uint32_t milliseconds) override {
        Cancel(timer);
        const uint64_t expiry = now_ + milliseconds;
        if (spare_.empty()) {
            places_[timer] = queue_.emplace_hint(queue_.end(), expiry, timer);
        } else {
            spare_.key() = expiry;
            spare_.mapped() = timer;
            places_[timer] = queue_.insert(queue_.end(), std::move(spare_));
        }
    }
    void Cancel(size_t timer) override {
        if (places_[timer] != queue_.end()) {
            spare_ = queue_.extract(places_[timer]);
            places_[timer] = queue_.end();
        }
    }
    void Turn() override {
        Refresh();
        while (!queue_.empty() && queue_.begin()->first <= now_) {
            const size_t timer = queue_.begin()->second;
            Cancel(timer);
            ++fired;
            if (isPeriodic_) {
                Arm(timer, kPeriodMs);
            }
        }
    }

private:
    using Queue = std::multimap<uint64_t, size_t>;

    static uint64_t Now() {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return static_cast<uint64_t>(
            std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
    }

    bool isPeriodic_;
    uint64_t now_ = 0;
    Queue queue_;
    Queue::node_type spare_;
    std::vector<Queue::iterator> places_;
};

}  // namespace

std::unique_ptr<TimerSet> MultimapTimers(size_t count, TimerKind kind) {
    return std::make_unique<Set>(count, kind);
}

}  // namespace Bench
