#include "core/timer/TimeValue.h"

#include <ctime>
#include <tuple>

namespace Quenda {

namespace {

constexpr int32_t kNanosecondsPerSecond = 1000000000;
constexpr int32_t kNanosecondsPerMillisecond = 1000000;

// Seconds wrap as on the terminal, without a signed overflow, which the language leaves undefined.
int32_t WrapSeconds(int64_t seconds) {
    return static_cast<int32_t>(static_cast<uint32_t>(seconds));
}

TimeValue FromTimespec(const timespec& time) {
    return {WrapSeconds(time.tv_sec), static_cast<int32_t>(time.tv_nsec)};
}

}  // namespace

TimeValue::TimeValue(int32_t seconds, int32_t nanoseconds) {
    // At most three steps, since the nanoseconds have 32 bits.
    int64_t total = seconds;
    while (nanoseconds >= kNanosecondsPerSecond) {
        nanoseconds -= kNanosecondsPerSecond;
        ++total;
    }
    while (nanoseconds < 0) {
        nanoseconds += kNanosecondsPerSecond;
        --total;
    }
    seconds_ = WrapSeconds(total);
    nanoseconds_ = nanoseconds;
}

TimeValue TimeValue::Now() {
    timespec now{};
    (void)clock_gettime(CLOCK_MONOTONIC_RAW, &now);  // Linux has the clock since 2.6.28
    return FromTimespec(now);
}

TimeValue TimeValue::Resolution() {
    timespec resolution{};
    (void)clock_getres(CLOCK_MONOTONIC_RAW, &resolution);
    return FromTimespec(resolution);
}

int64_t TimeValue::Milliseconds() const {
    return int64_t{seconds_} * 1000 + nanoseconds_ / kNanosecondsPerMillisecond;
}

void TimeValue::AddMilliseconds(uint32_t milliseconds) {
    const auto total =
        static_cast<uint64_t>(int64_t{seconds_} * kNanosecondsPerSecond + nanoseconds_ +
                              int64_t{milliseconds} * kNanosecondsPerMillisecond);
    seconds_ = WrapSeconds(static_cast<int64_t>(total / kNanosecondsPerSecond));
    nanoseconds_ = static_cast<int32_t>(total % kNanosecondsPerSecond);
}

void TimeValue::SetToNowPlus(uint32_t milliseconds) {
    *this = Now();
    AddMilliseconds(milliseconds);
}

TimeValue TimeValue::operator-(const TimeValue& other) const {
    return {WrapSeconds(int64_t{seconds_} - other.seconds_), nanoseconds_ - other.nanoseconds_};
}

bool TimeValue::operator<(const TimeValue& other) const {
    return std::tie(seconds_, nanoseconds_) < std::tie(other.seconds_, other.nanoseconds_);
}

bool TimeValue::operator==(const TimeValue& other) const {
    return std::tie(seconds_, nanoseconds_) == std::tie(other.seconds_, other.nanoseconds_);
}

int64_t MonotonicMs() {
    return TimeValue::Now().Milliseconds();
}

}  // namespace Quenda
