// Times and durations on the raw monotonic clock. All timers and all waits of the event loop use
// this clock, so that setting the wall clock never moves a timer.
#pragma once

#include <cstdint>

namespace Quenda {

// Seconds and nanoseconds, normalised: 0 to 999,999,999 nanoseconds. Both have 32 bits on every
// machine.
class TimeValue {
public:
    TimeValue() = default;
    TimeValue(int32_t seconds, int32_t nanoseconds);

    // clock_gettime(2), clock_getres(2) with CLOCK_MONOTONIC_RAW.
    static TimeValue Now();
    static TimeValue Resolution();

    int32_t Seconds() const { return seconds_; }
    int32_t Nanoseconds() const { return nanoseconds_; }
    // Rounded down to whole milliseconds.
    int64_t Milliseconds() const;

    void AddMilliseconds(uint32_t milliseconds);
    void SetToNowPlus(uint32_t milliseconds);

    TimeValue operator-(const TimeValue& other) const;
    bool operator>=(const TimeValue& other) const { return !(*this < other); }
    bool operator<(const TimeValue& other) const;
    bool operator==(const TimeValue& other) const;

private:
    int32_t seconds_ = 0;
    int32_t nanoseconds_ = 0;
};

// The raw monotonic time in milliseconds.
int64_t MonotonicMs();

}  // namespace Quenda
