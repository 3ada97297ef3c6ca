#include "core/timer/WallClock.h"

#include <sys/time.h>

#include <cstdio>

namespace Quenda {

static_assert(sizeof(time_t) == 8, "build with _TIME_BITS=64: 32 bits end in 2038");

const char* defaultTimeFormat = "%FT%T%Z";

namespace {

constexpr uint64_t kMicrosecondsPerSecond = 1000000;

uint64_t ToMicroseconds(const WallTime& time) {
    return static_cast<uint64_t>(time.seconds) * kMicrosecondsPerSecond +
           static_cast<uint64_t>(time.microseconds);
}

WallTime FromMicroseconds(uint64_t total) {
    return {static_cast<int64_t>(total / kMicrosecondsPerSecond),
            static_cast<int32_t>(total % kMicrosecondsPerSecond)};
}

uint64_t PeriodInMicroseconds(int32_t periodMs) {
    return periodMs <= 0 ? 1000 : static_cast<uint64_t>(periodMs) * 1000;
}

}  // namespace

WallTime CurrentWallTime() {
    timeval now{};
    (void)gettimeofday(&now, nullptr);  // cannot fail with valid arguments
    return {now.tv_sec, static_cast<int32_t>(now.tv_usec)};
}

WallTime FloorToPeriod(const WallTime& time, int32_t periodMs) {
    const uint64_t period = PeriodInMicroseconds(periodMs);
    return FromMicroseconds(ToMicroseconds(time) / period * period);
}

WallTime NextPeriod(const WallTime& time, int32_t periodMs) {
    const uint64_t period = PeriodInMicroseconds(periodMs);
    return FromMicroseconds((ToMicroseconds(time) + period) / period * period);
}

int FormatSeconds(const TimeValue& time, char* buffer, size_t size) {
    // Unsigned and 32 bits wide, as an unsigned long is on the terminal.
    return snprintf(buffer, size, "%lu.%06lu",
                    static_cast<unsigned long>(static_cast<uint32_t>(time.Seconds())),
                    static_cast<unsigned long>(time.Nanoseconds() / 1000));
}

SharedText FormatTime(time_t time, const char* format) {
    tm fields{};
    char text[256] = "";
    if (gmtime_r(&time, &fields) == nullptr || strftime(text, sizeof(text), format, &fields) == 0) {
        return SharedText("");
    }
    return SharedText(text);
}

bool ParseTime(const char* text, time_t& time, const char* format) {
    tm fields{};
    if (strptime(text, format, &fields) == nullptr) {
        return false;
    }
    const time_t parsed = mktime(&fields);
    if (parsed == -1) {
        return false;
    }
    time = parsed;
    return true;
}

}  // namespace Quenda
