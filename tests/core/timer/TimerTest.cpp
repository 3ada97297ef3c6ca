#include <gtest/gtest.h>

#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"
#include "tests/support/Heap.h"

using namespace Quenda;

namespace {

TimeKeeper& keeper = TimeKeeper::Instance();

TEST(TimerTest, TimerIsRearmedAlsoWhenNoMemoryCanBeHad) {
    PeriodicTimer timer("p");
    timer.StartAt({1, 0});  // its period is 1 ms until it gets another
    onAllocation = [] { throw std::bad_alloc(); };
    keeper.ProcessExpired(timer.Expiry());
    onAllocation = nullptr;
    EXPECT_EQ(keeper.ActiveCount(), 1U);
    EXPECT_EQ(timer.Expiry(), TimeValue(1, 1000000));
}

TEST(TimerTest, StartSpreadsTheFirstExpiryOverHalfAPeriod) {
    PeriodicTimer timer("p");
    int64_t longestMs = 0;
    for (int i = 0; i < 300; ++i) {
        timer.Start(1000);
        longestMs = std::max(longestMs, keeper.TimeToNext().Milliseconds());
    }
    EXPECT_GE(longestMs, 450);
    EXPECT_LT(longestMs, 500);
    timer.Start(0, 0);  // counts as 1 ms
    const TimeValue first = timer.Expiry();
    keeper.ProcessExpired(first);
    EXPECT_EQ((timer.Expiry() - first).Milliseconds(), 1);
    timer.Start(0);
    EXPECT_TRUE(timer.HasExpired(TimeValue::Now()));
    EXPECT_EQ(keeper.TimeToNext(), TimeValue(0, 0));
    timer.Start(1);
    EXPECT_LT((timer.Expiry() - TimeValue::Now()).Milliseconds(), 1);
    timer.Stop();
    EXPECT_TRUE(keeper.IsEmpty());
    EXPECT_EQ(keeper.TimeToNext(), TimeValue(-1, 0));
}

}  // namespace
