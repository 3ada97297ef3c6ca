#include "core/timer/TimeValue.h"

#include <gtest/gtest.h>

#include <climits>

using namespace Quenda;

namespace {

struct Pair {
    int32_t seconds;
    int32_t nanoseconds;
};

void ExpectTime(const TimeValue& time, Pair expected, const char* what) {
    EXPECT_EQ(time.Seconds(), expected.seconds) << what;
    EXPECT_EQ(time.Nanoseconds(), expected.nanoseconds) << what;
}

TEST(TimeValueTest, IsNormalisedHoweverItIsMade) {
    ExpectTime({1, 999999999}, {1, 999999999}, "the most that fits");
    ExpectTime({1, 1000000000}, {2, 0}, "one more");
    ExpectTime({1, INT_MAX}, {3, 147483647}, "far above");
    ExpectTime({0, -1}, {-1, 999999999}, "one below");
    ExpectTime({5, -1000000000}, {4, 0}, "a whole second below");
    ExpectTime({0, INT_MIN}, {-3, 852516352}, "far below");
    ExpectTime({INT_MAX, 1000000000}, {INT_MIN, 0}, "seconds wrap");
    ExpectTime(TimeValue(5, 0) - TimeValue(3, 1), {1, 999999999}, "difference");
    ExpectTime(TimeValue(3, 1) - TimeValue(5, 0), {-2, 1}, "negative difference");
}

TEST(TimeValueTest, AddsMillisecondsInMoreThan32Bits) {
    const struct {
        Pair start;
        uint32_t milliseconds;
        Pair sum;
    } cases[] = {
        {{0, 999000000}, 1, {1, 0}},
        {{0, 998999999}, 1, {0, 999999999}},
        {{10, 500000000}, UINT32_MAX, {4294977, 795000000}},
        {{INT_MAX, 0}, 1000, {INT_MIN, 0}},
    };
    for (const auto& c : cases) {
        TimeValue time(c.start.seconds, c.start.nanoseconds);
        time.AddMilliseconds(c.milliseconds);
        ExpectTime(time, c.sum, "sum");
    }
}

TEST(TimeValueTest, CountsMillisecondsIn64BitsAndRoundsDown) {
    EXPECT_EQ(TimeValue(INT_MAX, 999999999).Milliseconds(), 2147483647999);
    EXPECT_EQ(TimeValue(-1, 0).Milliseconds(), -1000);
    EXPECT_EQ(TimeValue(0, -1).Milliseconds(), -1);
}

TEST(TimeValueTest, ComparesSecondsFirst) {
    EXPECT_TRUE(TimeValue(2, 0) >= TimeValue(1, 999999999));
    EXPECT_TRUE(TimeValue(1, 5) >= TimeValue(1, 5));
    EXPECT_FALSE(TimeValue(1, 5) >= TimeValue(1, 6));
    EXPECT_TRUE(TimeValue(-1, 0) < TimeValue(0, 0));
}

}  // namespace
