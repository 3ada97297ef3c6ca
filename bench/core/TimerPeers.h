// The same timers from several libraries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Bench {

enum class TimerKind {
    kOnce,      // fires once
    kPeriodic,  // and is armed again when it fires, kPeriodMs later
};

constexpr uint32_t kPeriodMs = 3600 * 1000;

// A number of timers, at first idle, on an event loop of the library.
class TimerSet {
public:
    virtual ~TimerSet() = default;
    // Takes the time from which `Arm` counts, where the library does not do so itself.
    virtual void Refresh() = 0;
    // Also for a timer that is armed already.
    virtual void Arm(size_t timer, uint32_t milliseconds) = 0;
    virtual void Cancel(size_t timer) = 0;
    // One turn of the loop, without waiting.
    virtual void Turn() = 0;

    size_t fired = 0;
    size_t rearmed = 0;  // for the measurement to count with
};

std::unique_ptr<TimerSet> QuendaTimers(size_t count, TimerKind kind);
std::unique_ptr<TimerSet> LibeventTimers(size_t count, TimerKind kind);
std::unique_ptr<TimerSet> LibuvTimers(size_t count, TimerKind kind);
// The floor of our own queue. Its turn is no turn of a loop: it only looks at the clock.
std::unique_ptr<TimerSet> MultimapTimers(size_t count, TimerKind kind);

}  // namespace Bench
