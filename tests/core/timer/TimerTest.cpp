#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <new>

#include "core/output/StringWritable.h"
#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

static int allocations = 0;

void* operator new(size_t size) {
    ++allocations;
    return malloc(size);
}

void operator delete(void* block) noexcept {
    free(block);
}

void operator delete(void* block, size_t /*size*/) noexcept {
    free(block);
}

namespace {

// Fires once and then stays active, out of the queue.
struct Shot : TimerBase {
    using TimerBase::TimerBase;
    void Expire(const TimeValue& now) override { (void)CallBack(now); }
};

struct TimerTest : testing::Test {
    void TearDown() override { EXPECT_TRUE(keeper_.IsEmpty()); }
    TimerBase::Callback Do(const std::function<void()>& action) {
        return TimerBase::Callback(new CallbackTo<void(unsigned int, void*)>(
            [this, action](unsigned int now, void* data) { now_ = now, data_ = data, action(); }));
    }
    TimerBase::Callback Note(const char* name) {
        return Do([this, name] { journal_ += name; });
    }
    TimeKeeper& keeper_ = TimeKeeper::Instance();
    std::string journal_;
    unsigned int now_ = 0;
    void* data_ = nullptr;
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
    PeriodicTimer timer("p", Note("."));
    timer.SetUserData(&timer);
    timer.Start(0, 100);
    timer.StartAt({4294967, 0});  // 296 ms before the 32 bits wrap
    keeper_.ProcessExpired({4294967, 297000000});
    EXPECT_EQ(journal_, "...");
    EXPECT_EQ(timer.Expiry(), TimeValue(4294967, 300000000));
    EXPECT_EQ(now_, 1U);
    EXPECT_EQ(data_, &timer);
}

TEST_F(TimerTest, FiringAndRearmingTakesNoMemory) {
    PeriodicTimer timer("p", Do([] {}));
    timer.Start(0, 100);
    const int before = allocations;
    keeper_.ProcessExpired(timer.Expiry());
    EXPECT_EQ(allocations, before);
}

TEST_F(TimerTest, CallbackMayStopRestartOrDestroyItsOwnTimer) {
    std::unique_ptr<PeriodicTimer> timer;
    const auto restart = [&] { timer->StartAt({INT_MAX, 0}); };
    const std::pair<std::function<void()>, size_t> cases[] = {
        {[&] { timer->Stop(); }, 0}, {restart, 1}, {[&] { timer.reset(); }, 0}};
    for (const auto& [action, armed] : cases) {
        timer = std::make_unique<PeriodicTimer>("t", Do(action));
        timer->Start(0, 100);
        keeper_.ProcessExpired(timer->Expiry());
        EXPECT_EQ(keeper_.ActiveCount(), armed);
        EXPECT_TRUE(armed == 0 || timer->Expiry() == TimeValue(INT_MAX, 100000000));
    }
}

TEST_F(TimerTest, CallbackMayStopRestartDestroyOrAddOthers) {
    auto destroyed = std::make_unique<Shot>("d", Note("d"));
    Shot stopped("s", Note("s")), moved("m", Note("m")), added("a", Note("a"));
    Shot first("f", Do([&] {
                   destroyed.reset();
                   stopped.Stop();
                   moved.StartAt({6, 0});
                   added.StartAt({4, 0});
               }));
    for (Shot* timer : {&first, destroyed.get(), &stopped, &moved}) {
        timer->StartAt({5, 0});
    }
    keeper_.ProcessExpired({5, 0});
    EXPECT_EQ(journal_, "a");  // due already when it was added: in the same pass
    keeper_.ProcessExpired({6, 0});
    EXPECT_EQ(journal_, "am");
}

TEST_F(TimerTest, RemovalIsByExpiryAlsoForATimerThatIsQueuedTwice) {
    Shot timer("t", Note("t"));
    TimeKeeper other;
    other.AddTimer(&timer);
    timer.StartAt({5, 0});
    other.RemoveTimer(&timer);
    EXPECT_EQ(other.ActiveCount(), 1U) << "queued under another expiry";
    timer.StartAt({0, 0});
    other.RemoveTimer(&timer);
    EXPECT_TRUE(keeper_.ActiveCount() == 1 && other.IsEmpty());
    Shot next("x", Note("x"));
    keeper_.AddTimer(&timer);
    timer.Stop();  // leaves its second place, in front of the next one
    next.StartAt({0, 0});
    timer.StartAt({0, 0});
    keeper_.RemoveTimer(&timer);
    keeper_.ProcessExpired({0, 0});
    EXPECT_EQ(journal_, "xt");
}

TEST_F(TimerTest, StartSpreadsTheFirstExpiryOverHalfAPeriod) {
    const std::pair<unsigned int, unsigned int> cases[] = {
        {0, 1}, {1, 1}, {3, 1}, {1000, 500}, {UINT32_MAX, INT_MAX}};
    for (const auto& [periodMs, belowMs] : cases) {
        PeriodicTimer timer("p");
        int64_t longestMs = 0;
        for (int i = 0; i < 300; ++i) {
            const TimeValue before = TimeValue::Now();
            timer.Start(periodMs);
            longestMs = std::max(longestMs, (timer.Expiry() - before).Milliseconds());
            EXPECT_LT((timer.Expiry() - TimeValue::Now()).Milliseconds(), belowMs);
        }
        EXPECT_GE(longestMs, int64_t{belowMs / 2}) << periodMs;
    }
}

TEST_F(TimerTest, DumpAndTimeToNextShowWhatIsLeftButNothingBelowZero) {
    Shot fired("fired"), late("late"), nameless{SharedText()};
    EXPECT_EQ(keeper_.TimeToNext(), TimeValue(-1, 0));
    keeper_.ResetExpiredCount();
    fired.StartAt({0, 0});
    keeper_.ProcessExpired({0, 0});
    nameless.StartAt({INT_MAX, 0});
    EXPECT_GT(keeper_.TimeToNext().Milliseconds(), INT_MAX);
    late.StartAt({0, 1});
    EXPECT_EQ(keeper_.TimeToNext(), TimeValue(0, 0));
    StringWritable out;
    keeper_.Dump(&out);
    const std::string head = "1 Timers Expired\n2 Active Timer(s)\nlate -> 0\n -> ";
    ASSERT_EQ(out.Text().substr(0, head.size()), head);
    EXPECT_GT(std::stoll(out.Text().substr(head.size())), INT_MAX);
}

}  // namespace
