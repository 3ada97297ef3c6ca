#include "core/timer/WallClock.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <string>

using namespace Quenda;

namespace {

TEST(WallClockTest, FloorIsNotAfterTheTimeAndNextIsStrictlyAfterIt) {
    const struct {
        WallTime time;
        int32_t periodMs;
        WallTime floor;
        WallTime next;
    } cases[] = {
        {{10, 0}, 5000, {10, 0}, {15, 0}},
        {{9, 999999}, 5000, {5, 0}, {10, 0}},
        {{0, 250001}, 250, {0, 250000}, {0, 500000}},
        {{7, 1999}, -60000, {7, 1000}, {7, 2000}},
        {{7, 1999}, INT_MIN, {7, 1000}, {7, 2000}},
        {{7, 1999}, 0, {7, 1000}, {7, 2000}},
        {{4294967, 0}, INT_MAX, {2147483, 647000}, {4294967, 294000}},
        {{2147483647, 1}, 1000, {2147483647, 0}, {2147483648, 0}},
    };
    for (const auto& c : cases) {
        const WallTime floor = FloorToPeriod(c.time, c.periodMs);
        const WallTime next = NextPeriod(c.time, c.periodMs);
        EXPECT_EQ(floor.seconds, c.floor.seconds) << c.time.seconds << " " << c.periodMs;
        EXPECT_EQ(floor.microseconds, c.floor.microseconds) << c.time.seconds;
        EXPECT_EQ(next.seconds, c.next.seconds) << c.time.seconds << " " << c.periodMs;
        EXPECT_EQ(next.microseconds, c.next.microseconds) << c.time.seconds;
    }
}

TEST(WallClockTest, SecondsHaveSixDecimalsAndAreUnsigned) {
    char text[32];
    EXPECT_EQ(FormatSeconds({5, 1234999}, text, sizeof(text)), 8);
    EXPECT_STREQ(text, "5.001234");
    EXPECT_EQ(FormatSeconds({-1, 0}, text, 5), 17);
    EXPECT_STREQ(text, "4294");
}

TEST(WallClockTest, FormatsInUtcUpTo255Characters) {
    EXPECT_STREQ(FormatTime(0).Get(), "1970-01-01T00:00:00GMT");
    EXPECT_STREQ(FormatTime(INT_MAX, "%c").Get(), "Tue Jan 19 03:14:07 2038");
    EXPECT_EQ(FormatTime(0, std::string(255, 'x').c_str()).Length(), 255U);
    EXPECT_EQ(FormatTime(0, std::string(256, 'x').c_str()).Length(), 0U);
    defaultTimeFormat = "%Y";
    EXPECT_STREQ(FormatTime(-1).Get(), "1969");
    defaultTimeFormat = "%FT%T%Z";
}

TEST(WallClockTest, ParsesLocalTimeThat32BitsHold) {
    const struct {
        const char* zone;
        const char* text;
        bool isTime;
        time_t time;
    } cases[] = {
        {"UTC0", "1970-01-02T00:00:00GMT", true, 86400},
        {"EST5", "1970-01-02T00:00:00GMT", true, 86400 + 5 * 3600},
        {"UTC0", "2038-01-19T03:14:07UTC", true, INT_MAX},
        {"UTC0", "2038-01-19T03:14:08UTC", false, 0},
        {"UTC0", "2039-01-01T00:00:00UTC", false, 0},
        {"UTC0", "2107-01-01T00:00:00UTC", false, 0},
        {"UTC0", "1901-12-13T20:45:52UTC", true, INT_MIN},
        {"UTC0", "1901-12-13T20:45:51UTC", false, 0},
        {"UTC0", "1969-12-31T23:59:59UTC", false, 0},  // -1, which mktime(3) fails with
        {"UTC0", "yesterday", false, 0},
    };
    for (const auto& c : cases) {
        setenv("TZ", c.zone, 1);
        tzset();
        time_t time = 42;
        EXPECT_EQ(ParseTime(c.text, time), c.isTime) << c.zone << " " << c.text;
        EXPECT_EQ(time, c.isTime ? c.time : 42) << c.zone << " " << c.text;
    }
    unsetenv("TZ");
}

}  // namespace
