// The wall clock: time of day for reports. It never drives a timer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

#include "core/text/SharedText.h"
#include "core/timer/TimeValue.h"

namespace Quenda {

struct WallTime {
    int64_t seconds = 0;  // since 1970
    int32_t microseconds = 0;
};

// gettimeofday(2).
WallTime CurrentWallTime();

// The last multiple of the period (in milliseconds) that is not after the time, and the first
// that is strictly after it. A negative period counts as 1 ms, and so does 0.
WallTime FloorToPeriod(const WallTime& time, int32_t periodMs);
WallTime NextPeriod(const WallTime& time, int32_t periodMs);

// "seconds.microseconds" with six decimals, cut to `size` bytes; returns what snprintf returns.
int FormatSeconds(const TimeValue& time, char* buffer, size_t size);

// The format that FormatTime and ParseTime take when they are given none. May be changed.
extern const char* defaultTimeFormat;

// strftime(3) of the time in UTC, at most 255 characters; empty when it does not fit.
SharedText FormatTime(time_t time, const char* format = defaultTimeFormat);

// Reads a time with strptime(3). The fields count as local time, although FormatTime writes UTC:
// the two agree only where the local zone is UTC. Callers rely on this, so it stays.
// False, with `time` unchanged, when the text does not match or means no time.
bool ParseTime(const char* text, time_t& time, const char* format = defaultTimeFormat);

}  // namespace Quenda
