#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>

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
        {{1, INT_MAX}, 3, 147483647},
        {{0, INT_MIN}, -3, 852516352},
        {{5, -1000000000}, 4, 0},
        {{INT_MAX, 1000000000}, INT_MIN, 0},
        {TimeValue(5, 0) - TimeValue(3, 1), 1, 999999999},
        {TimeValue(3, 1) - TimeValue(5, 0), -2, 1},
        {Plus({0, 999000000}, 1), 1, 0},
        {Plus({10, 500000000}, UINT32_MAX), 4294977, 795000000},
        {Plus({INT_MAX, 0}, 1000), INT_MIN, 0}};
    for (const auto& [time, seconds, nanoseconds] : cases) {
        EXPECT_EQ(time.Seconds(), seconds) << nanoseconds;
        EXPECT_EQ(time.Nanoseconds(), nanoseconds) << seconds;
    }
    EXPECT_EQ(TimeValue(INT_MAX, 999999999).Milliseconds(), 2147483647999);
    EXPECT_EQ(TimeValue(0, -1).Milliseconds(), -1);
}

TEST(WallClockTest, FloorIsNotAfterTheTimeAndNextIsStrictlyAfterIt) {
    const std::tuple<WallTime, int32_t, int64_t, int64_t> cases[] = {
        {{10, 0}, 5000, 10000000, 15000000},
        {{9, 999999}, 5000, 5000000, 10000000},
        {{7, 1999}, 0, 7001000, 7002000},
        {{7, 1999}, -60000, 7001000, 7002000},
        {{4294967, 0}, INT_MAX, 2147483647000, 4294967294000}};
    const auto total = [](const WallTime& t) { return t.seconds * 1000000 + t.microseconds; };
    for (const auto& [time, periodMs, floor, next] : cases) {
        EXPECT_EQ(total(FloorToPeriod(time, periodMs)), floor) << periodMs;
        EXPECT_EQ(total(NextPeriod(time, periodMs)), next) << periodMs;
    }
}

TEST(WallClockTest, FormatsSecondsAsUnsignedAndTimesInUtcUpTo255Characters) {
    char text[5];
    EXPECT_EQ(FormatSeconds({-1, 1999}, text, sizeof(text)), 17);
    EXPECT_STREQ(text, "4294");
    EXPECT_STREQ(FormatTime(2177452800).Get(), "2039-01-01T00:00:00GMT");
    EXPECT_STREQ(FormatTime(4323283200).Get(), "2107-01-01T00:00:00GMT");
    EXPECT_EQ(FormatTime(0, std::string(255, 'x').c_str()).Length(), 255U);
    EXPECT_EQ(FormatTime(0, std::string(256, 'x').c_str()).Length(), 0U);
}

TEST(WallClockTest, ParsesLocalTimeBeyond32Bits) {
    const std::tuple<const char*, const char*, time_t> cases[] = {
        {"EST5", "1970-01-02T00:00:00GMT", 86400 + 5 * 3600},
        {"UTC0", "2038-01-19T03:14:08UTC", 2147483648},
        {"UTC0", "2107-01-01T00:00:00UTC", 4323283200},
        {"UTC0", "1969-12-31T23:59:59UTC", 42},  // -1, which mktime(3) fails with
        {"UTC0", "yesterday", 42}};
    for (const auto& [zone, text, expected] : cases) {
        setenv("TZ", zone, 1);
        tzset();
        time_t time = 42;  // stays when there is none
        EXPECT_EQ(ParseTime(text, time), expected != 42) << text;
        EXPECT_EQ(time, expected) << text;
    }
}

}  // namespace
