#include <gtest/gtest.h>

#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"
#include "tests/support/Heap.h"

using namespace Quenda;

namespace {

struct TimerTest : testing::Test {
    void TearDown() override { EXPECT_TRUE(keeper_.IsEmpty()); }
    TimeKeeper& keeper_ = TimeKeeper::Instance();
};

TEST_F(TimerTest, TimerIsRearmedAlsoWhenNoMemoryCanBeHad) {
    PeriodicTimer timer("p");
    timer.StartAt({1, 0});  // its period is 1 ms until it gets another
    onAllocation = [] { throw std::bad_alloc(); };
    keeper_.ProcessExpired(timer.Expiry());
    onAllocation = nullptr;
    EXPECT_EQ(keeper_.ActiveCount(), 1U);
    EXPECT_EQ(timer.Expiry(), TimeValue(1, 1000000));
}

TEST_F(TimerTest, StartSpreadsTheFirstExpiryOverHalfAPeriod) {
    PeriodicTimer timer("p");
    int64_t longestMs = 0;
    for (int i = 0; i < 300; ++i) {
        const TimeValue before = TimeValue::Now();
        timer.Start(1000);
        longestMs = std::max(longestMs, (timer.Expiry() - before).Milliseconds());
        EXPECT_LT((timer.Expiry() - TimeValue::Now()).Milliseconds(), 500);
    }
    EXPECT_GE(longestMs, 250);
    timer.Start(3600000, 1);
    EXPECT_EQ(keeper_.TimeToNext().Seconds() / 100, 35);
    timer.Start(0, 0);  // counts as 1 ms
    const TimeValue first = timer.Expiry();
    keeper_.ProcessExpired(first);
    EXPECT_EQ((timer.Expiry() - first).Milliseconds(), 1);
    timer.Start(0);
    EXPECT_TRUE(timer.HasExpired(TimeValue::Now()));
    EXPECT_EQ(keeper_.TimeToNext(), TimeValue(0, 0));
    timer.Start(1);
    EXPECT_LT((timer.Expiry() - TimeValue::Now()).Milliseconds(), 1);
    timer.Stop();
    EXPECT_EQ(keeper_.TimeToNext(), TimeValue(-1, 0));
}

}  // namespace
