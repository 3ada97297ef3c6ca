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
    const struct {
        TimeValue time;
        int32_t seconds;
        int32_t nanoseconds;
    } cases[] = {
        {{1, 999999999}, 1, 999999999},
        {{1, 1000000000}, 2, 0},
        {{1, INT_MAX}, 3, 147483647},
        {{0, -1}, -1, 999999999},
        {{5, -1000000000}, 4, 0},
        {{0, INT_MIN}, -3, 852516352},
        {{INT_MAX, 1000000000}, INT_MIN, 0},
        {TimeValue(5, 0) - TimeValue(3, 1), 1, 999999999},
        {TimeValue(3, 1) - TimeValue(5, 0), -2, 1},
        {Plus({0, 999000000}, 1), 1, 0},
        {Plus({0, 998999999}, 1), 0, 999999999},
        {Plus({10, 500000000}, UINT32_MAX), 4294977, 795000000},
        {Plus({INT_MAX, 0}, 1000), INT_MIN, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.time.Seconds(), c.seconds) << "case " << &c - cases;
        EXPECT_EQ(c.time.Nanoseconds(), c.nanoseconds) << "case " << &c - cases;
    }
    EXPECT_EQ(TimeValue(INT_MAX, 999999999).Milliseconds(), 2147483647999);
    EXPECT_EQ(TimeValue(0, -1).Milliseconds(), -1);
    EXPECT_TRUE(TimeValue(2, 0) >= TimeValue(1, 999999999));
    EXPECT_TRUE(TimeValue(1, 5) >= TimeValue(1, 5));
    EXPECT_TRUE(TimeValue(1, 5) < TimeValue(1, 6));
}

TEST(WallClockTest, FloorIsNotAfterTheTimeAndNextIsStrictlyAfterIt) {
    const struct {
        WallTime time;
        int32_t periodMs;
        WallTime floor;
        WallTime next;
    } cases[] = {
        {{10, 0}, 5000, {10, 0}, {15, 0}},
        {{9, 999999}, 5000, {5, 0}, {10, 0}},
        {{7, 1999}, -60000, {7, 1000}, {7, 2000}},
        {{7, 1999}, 0, {7, 1000}, {7, 2000}},
        {{4294967, 0}, INT_MAX, {2147483, 647000}, {4294967, 294000}},
        {{2147483647, 1}, 1000, {2147483647, 0}, {2147483648, 0}},
    };
    const auto pair = [](const WallTime& t) { return std::pair(t.seconds, t.microseconds); };
    for (const auto& c : cases) {
        EXPECT_EQ(pair(FloorToPeriod(c.time, c.periodMs)), pair(c.floor)) << c.periodMs;
        EXPECT_EQ(pair(NextPeriod(c.time, c.periodMs)), pair(c.next)) << c.periodMs;
    }
}

TEST(WallClockTest, FormatsSecondsAsUnsignedAndTimesInUtcUpTo255Characters) {
    char text[32];
    EXPECT_EQ(FormatSeconds({5, 1234999}, text, sizeof(text)), 8);
    EXPECT_STREQ(text, "5.001234");
    EXPECT_EQ(FormatSeconds({-1, 0}, text, 5), 17);
    EXPECT_STREQ(text, "4294");
    EXPECT_STREQ(FormatTime(0).Get(), "1970-01-01T00:00:00GMT");
    EXPECT_EQ(FormatTime(0, std::string(255, 'x').c_str()).Length(), 255U);
    EXPECT_EQ(FormatTime(0, std::string(256, 'x').c_str()).Length(), 0U);
}

TEST(WallClockTest, ParsesLocalTimeThat32BitsHold) {
    const struct {
        const char* zone;
        const char* text;
        time_t time;  // 42: none
    } cases[] = {
        {"UTC0", "1970-01-02T00:00:00GMT", 86400},
        {"EST5", "1970-01-02T00:00:00GMT", 86400 + 5 * 3600},
        {"UTC0", "2038-01-19T03:14:07UTC", INT_MAX},
        {"UTC0", "2038-01-19T03:14:08UTC", 42},
        {"UTC0", "2107-01-01T00:00:00UTC", 42},
        {"UTC0", "1901-12-13T20:45:52UTC", INT_MIN},
        {"UTC0", "1901-12-13T20:45:51UTC", 42},
        {"UTC0", "1969-12-31T23:59:59UTC", 42},  // -1, which mktime(3) fails with
        {"UTC0", "yesterday", 42},
    };
    for (const auto& c : cases) {
        setenv("TZ", c.zone, 1);
        tzset();
        time_t time = 42;
        EXPECT_EQ(ParseTime(c.text, time), c.time != 42) << c.zone << " " << c.text;
        EXPECT_EQ(time, c.time) << c.zone << " " << c.text;
    }
}

}  // namespace
