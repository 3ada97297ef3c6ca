#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <ctime>

#include "core/timer/TimeValue.h"
#include "core/timer/WallClock.h"

using namespace Quenda;

namespace {

TimeValue Plus(TimeValue time, uint32_t milliseconds) {
    time.AddMilliseconds(milliseconds);
    return time;
}

TEST(TimeValueTest, IsNormalisedHoweverItIsMade) {
    const std::tuple<TimeValue, int32_t, int32_t> cases[] = {
        {{1, 2000000000}, 3, 0},
        {{5, -1000000000}, 4, 0},
        {TimeValue(3, 1) - TimeValue(5, 2), -3, 999999999},
        {Plus({10, 500000000}, UINT32_MAX), 4294977, 795000000},
        {Plus({INT_MAX, 0}, 1000), INT_MIN, 0}};
    for (const auto& [time, seconds, nanoseconds] : cases) {
        EXPECT_EQ(time.Seconds(), seconds) << nanoseconds;
        EXPECT_EQ(time.Nanoseconds(), nanoseconds) << seconds;
    }
    EXPECT_EQ(TimeValue(INT_MAX, 999999999).Milliseconds(), 2147483647999);
}

TEST(TimeValueTest, NowIsReadFromTheClockThatNobodySets) {
    timespec before{}, after{}, resolution{};
    clock_gettime(CLOCK_MONOTONIC_RAW, &before);
    const int64_t nowMs = MonotonicMs();
    clock_gettime(CLOCK_MONOTONIC_RAW, &after);
    EXPECT_GE(nowMs, before.tv_sec * 1000 + before.tv_nsec / 1000000);
    EXPECT_LE(nowMs, after.tv_sec * 1000 + after.tv_nsec / 1000000);
    clock_getres(CLOCK_MONOTONIC_RAW, &resolution);
    EXPECT_EQ(TimeValue::Resolution().Nanoseconds(), resolution.tv_nsec);
}

TEST(WallClockTest, PeriodsBeginAtTheirMultiples) {
    EXPECT_EQ(FloorToPeriod({3, 0}, 1000).seconds, 3);
    EXPECT_EQ(NextPeriod({3, 0}, 1000).seconds, 4);  // strictly after the time
    EXPECT_EQ(NextPeriod({2, 999999}, 1000).seconds, 3);
    EXPECT_EQ(FloorToPeriod({3, 5999}, 0).microseconds, 5000);
    EXPECT_EQ(NextPeriod({3, 5999}, -7).microseconds, 6000);
}

TEST(WallClockTest, FormatsSecondsAsUnsigned) {
    char text[20];
    EXPECT_EQ(FormatSeconds({-1, 999999999}, text, sizeof(text)), 17);
    EXPECT_STREQ(text, "4294967295.999999");
}

TEST(WallClockTest, WritesUtcAndReadsLocalTimeBeyond32Bits) {
    setenv("TZ", "EST5", 1);
    tzset();
    time_t time = std::time(nullptr);
    EXPECT_GE(CurrentWallTime().seconds, time);
    EXPECT_TRUE(ParseTime("2107-01-01T00:00:00GMT", time));
    EXPECT_FALSE(ParseTime("yesterday", time));
    EXPECT_FALSE(ParseTime("1969-12-31T18:59:59GMT", time));  // mktime returns -1, as for an error
    EXPECT_EQ(time, 4323283200 + 5 * 3600);
    EXPECT_STREQ(FormatTime(4323283200).Get(), "2107-01-01T00:00:00GMT");
}

}  // namespace
