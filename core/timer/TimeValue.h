// A point in time, or a span of it, on the raw monotonic clock: every timer and every wait of
// the event loop is measured with it, so that setting the wall clock never moves a timer.
#pragma once

#include <cstdint>

namespace Quenda {

// Seconds and nanoseconds, always normalised to 0 to 999,999,999 nanoseconds. Both fields have
// 32 bits on every machine.
class TimeValue {
public:
    TimeValue() = default;
    TimeValue(int32_t seconds, int32_t nanoseconds);

    // clock_gettime(2), clock_getres(2) with CLOCK_MONOTONIC_RAW.
    static TimeValue Now();
    static TimeValue Resolution();

    int32_t Seconds() const { return static_cast<int32_t>(ordinal_ >> 32); }
    int32_t Nanoseconds() const { return static_cast<int32_t>(ordinal_); }
    // Rounded down to whole milliseconds.
    int64_t Milliseconds() const;

    void AddMilliseconds(uint32_t milliseconds);
    void SetToNowPlus(uint32_t milliseconds);

    TimeValue operator-(const TimeValue& other) const;
    bool operator>=(const TimeValue& other) const { return !(*this < other); }
    bool operator<(const TimeValue& other) const { return ordinal_ < other.ordinal_; }
    bool operator==(const TimeValue& other) const { return ordinal_ == other.ordinal_; }

private:
    void Set(int64_t seconds, int32_t nanoseconds);

    // The seconds in the upper half, the nanoseconds in the lower one: a single number to compare,
    // and the queue of timers does little else.
    int64_t ordinal_ = 0;
};

// The raw monotonic time in milliseconds.
int64_t MonotonicMs();

}  // namespace Quenda
