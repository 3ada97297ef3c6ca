// The wall clock, for times in reports. No timer uses it.
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

// The last multiple of the period that is not after the time, and the first one after the time. A
// period that is not positive counts as 1 ms.
WallTime FloorToPeriod(const WallTime& time, int32_t periodMs);
WallTime NextPeriod(const WallTime& time, int32_t periodMs);

// "seconds.microseconds" with six decimals, cut to `size` bytes; returns what snprintf returns.
int FormatSeconds(const TimeValue& time, char* buffer, size_t size);

// The default format of FormatTime and ParseTime. A program may change it.
extern const char* defaultTimeFormat;

// The time in UTC, formatted by strftime(3). Empty when the text has more than 255 characters.
SharedText FormatTime(time_t time, const char* format = defaultTimeFormat);

// Reads a time with strptime(3). It reads local time although FormatTime writes UTC, on purpose:
// callers rely on it. The two agree only where the local zone is UTC. When the text does not match
// or gives no valid time, returns false and leaves `time` unchanged.
bool ParseTime(const char* text, time_t& time, const char* format = defaultTimeFormat);

}  // namespace Quenda
