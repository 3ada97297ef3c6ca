#include "core/timer/TimeValue.h"

#include <ctime>

namespace Quenda {

namespace {

constexpr int32_t kNanosecondsPerSecond = 1000000000;
constexpr int32_t kNanosecondsPerMillisecond = 1000000;

// Seconds wrap as they do on the target, without the overflow that the language leaves undefined.
int32_t WrapSeconds(int64_t seconds) {
    return static_cast<int32_t>(static_cast<uint32_t>(seconds));
}

TimeValue FromTimespec(const timespec& time) {
    return {WrapSeconds(time.tv_sec), static_cast<int32_t>(time.tv_nsec)};
}

}  // namespace

TimeValue::TimeValue(int32_t seconds, int32_t nanoseconds) {
    // At most two seconds either way, since the nanoseconds themselves have 32 bits.
    int64_t total = seconds;
    while (nanoseconds >= kNanosecondsPerSecond) {
        nanoseconds -= kNanosecondsPerSecond;
        ++total;
    }
    while (nanoseconds < 0) {
        nanoseconds += kNanosecondsPerSecond;
        --total;
    }
    Set(total, nanoseconds);
}

void TimeValue::Set(int64_t seconds, int32_t nanoseconds) {
    ordinal_ = int64_t{WrapSeconds(seconds)} * (int64_t{1} << 32) + nanoseconds;
}

TimeValue TimeValue::Now() {
    timespec now{};
    (void)clock_gettime(CLOCK_MONOTONIC_RAW, &now);  // the clock is there since Linux 2.6.28
    return FromTimespec(now);
}

TimeValue TimeValue::Resolution() {
    timespec resolution{};
    (void)clock_getres(CLOCK_MONOTONIC_RAW, &resolution);
    return FromTimespec(resolution);
}

int64_t TimeValue::Milliseconds() const {
    return int64_t{Seconds()} * 1000 + Nanoseconds() / kNanosecondsPerMillisecond;
}

void TimeValue::AddMilliseconds(uint32_t milliseconds) {
    const auto total =
        static_cast<uint64_t>(int64_t{Seconds()} * kNanosecondsPerSecond + Nanoseconds() +
                              int64_t{milliseconds} * kNanosecondsPerMillisecond);
    Set(static_cast<int64_t>(total / kNanosecondsPerSecond),
        static_cast<int32_t>(total % kNanosecondsPerSecond));
}

void TimeValue::SetToNowPlus(uint32_t milliseconds) {
    *this = Now();
    AddMilliseconds(milliseconds);
}

TimeValue TimeValue::operator-(const TimeValue& other) const {
    return {WrapSeconds(int64_t{Seconds()} - other.Seconds()), Nanoseconds() - other.Nanoseconds()};
}

int64_t MonotonicMs() {
    return TimeValue::Now().Milliseconds();
}

}  // namespace Quenda
