#include <gtest/gtest.h>

#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"
#include "tests/support/CallbackTo.h"
#include "tests/support/Heap.h"

using namespace Quenda;

namespace {

// Fires once and then stays active, out of the queue.
struct Shot : TimerBase {
    using TimerBase::TimerBase;
    void Expire(const TimeValue& now) override { (void)CallBack(now); }
};

TimerBase::Callback Do(const std::function<void(unsigned int, void*)>& action) {
    return TimerBase::Callback(new CallbackTo<void(unsigned int, void*)>(action));
}

struct TimerTest : testing::Test {
    void TearDown() override { EXPECT_TRUE(keeper_.IsEmpty()); }
    TimerBase::Callback Note(const char* name) {
        return Do([this, name](auto...) { journal_ += name; });
    }
    TimeKeeper& keeper_ = TimeKeeper::Instance();
    std::string journal_;
};

TEST_F(TimerTest, FireInOrderOfExpiryAndTiesInOrderOfArming) {
    Shot a("a", Note("a")), b("b", Note("b")), c("c", Note("c"));
    a.StartAt({2, 0});
    b.StartAt({1, 0});
    c.StartAt({1, 0});
    b.StartAt({1, 0});  // armed anew: now behind c
    keeper_.ProcessExpired({0, 999999999});
    EXPECT_EQ(journal_, "");
    keeper_.ProcessExpired({1, 0});
    EXPECT_EQ(journal_, "cb");
    keeper_.ProcessExpired({5, 0});
    EXPECT_EQ(journal_, "cba");
}

TEST_F(TimerTest, StallYieldsOneCallForEachMissedPeriodWithTheTimeIn32Bits) {
    std::vector<std::pair<unsigned int, void*>> calls;
    PeriodicTimer timer("p", Do([&](unsigned int now, void* data) {
                            calls.push_back({now, data});
                        }));
    timer.SetUserData(&timer);
    timer.Start(0, 100);
    timer.StartAt({4294967, 0});  // 296 ms before the 32 bits wrap
    keeper_.ProcessExpired({4294967, 297000000});
    EXPECT_EQ(calls, (std::vector<std::pair<unsigned int, void*>>(3, {1U, &timer})));
    EXPECT_EQ(timer.Expiry(), TimeValue(4294967, 300000000));
}

TEST_F(TimerTest, TimerIsRearmedAlsoWhenNoMemoryCanBeHad) {
    PeriodicTimer timer("p", Do([](auto...) {}));
    timer.Start(0, 100);
    onAllocation = [] { throw std::bad_alloc(); };
    keeper_.ProcessExpired(timer.Expiry());
    onAllocation = nullptr;
    EXPECT_EQ(keeper_.ActiveCount(), 1U);
}

TEST_F(TimerTest, CallbackMayStopOrDestroyItsOwnTimer) {
    PeriodicTimer stopped("s", Do([&](auto...) { stopped.Stop(); }));
    std::unique_ptr<PeriodicTimer> destroyed;
    destroyed = std::make_unique<PeriodicTimer>("d", Do([&](auto...) { destroyed.reset(); }));
    stopped.Start(0, 100);
    destroyed->Start(0, 100);
    keeper_.ProcessExpired(destroyed->Expiry());
    EXPECT_EQ(keeper_.ActiveCount(), 0U);
    EXPECT_EQ(destroyed, nullptr);
}

TEST_F(TimerTest, CallbackMayStopRestartDestroyOrAddOthers) {
    auto destroyed = std::make_unique<Shot>("d", Note("d"));
    Shot untouched("u", Note("u")), stopped("s", Note("s"));
    Shot moved("m", Note("m")), added("a", Note("a"));
    Shot first("f", Do([&](auto...) {
                   moved.StartAt({6, 0});
                   stopped.Stop();
                   destroyed.reset();
                   added.StartAt({4, 0});
               }));
    for (Shot* timer : {&first, &untouched, destroyed.get(), &stopped, &moved}) {
        timer->StartAt({5, 0});
    }
    keeper_.ProcessExpired({5, 0});
    EXPECT_EQ(journal_, "au");  // what was due already when it was added: in the same pass
    keeper_.ProcessExpired({6, 0});
    EXPECT_EQ(journal_, "aum");
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
    timer.Start(1);
    EXPECT_LT((timer.Expiry() - TimeValue::Now()).Milliseconds(), 1);
}

}  // namespace
