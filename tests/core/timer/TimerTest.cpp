#include <gtest/gtest.h>

#include <climits>

#include "core/output/StringWritable.h"
#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

// Fires once and then stays active, out of the queue.
struct Shot : TimerBase {
    using TimerBase::TimerBase;
    void Expire(const TimeValue& now) override { (void)CallBack(now); }
};

TimerBase::Callback Do(const std::function<void()>& action) {
    return TimerBase::Callback(
        new CallbackTo<void(unsigned int, void*)>([action](unsigned int, void*) { action(); }));
}

TimeValue Plus(TimeValue time, uint32_t milliseconds) {
    time.AddMilliseconds(milliseconds);
    return time;
}

class TimerTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_TRUE(keeper_.IsEmpty()); }
    TimerBase::Callback Note(const char* name) {
        return Do([this, name] { journal_ += name; });
    }
    std::string DumpText() const {
        StringWritable out;
        keeper_.Dump(&out);
        return out.Text();
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
    EXPECT_TRUE(b.IsActive());
    b.Stop();
    EXPECT_FALSE(b.IsActive());
    keeper_.ProcessExpired({5, 0});
    EXPECT_EQ(journal_, "cba");
}

TEST_F(TimerTest, StallYieldsOneCallForEachMissedPeriodAndKeepsThePhase) {
    PeriodicTimer timer("p", Note("."));
    timer.Start(100, 100);
    const TimeValue first = timer.Expiry();
    keeper_.ProcessExpired(Plus(first, 250));
    EXPECT_EQ(journal_, "...");
    EXPECT_EQ(timer.Expiry(), Plus(first, 300));
}

TEST_F(TimerTest, CallbackGetsTheTimeOfThePassIn32BitsAndTheUserData) {
    unsigned int seen = 99;
    Shot timer("t",
               TimerBase::Callback(new CallbackTo<void(unsigned int, void*)>(
                   [](unsigned int now, void* data) { *static_cast<unsigned int*>(data) = now; })));
    timer.SetUserData(&seen);
    for (const auto& [nanoseconds, expected] :
         {std::pair(295999999, UINT32_MAX), {296000000, 0U}}) {
        timer.StartAt({4294967, 0});
        keeper_.ProcessExpired({4294967, nanoseconds});
        EXPECT_EQ(seen, expected);
    }
}

TEST_F(TimerTest, CallbackMayStopRestartOrDestroyItsOwnTimer) {
    std::unique_ptr<PeriodicTimer> timer;
    TimeValue restarted;
    const std::function<void()> restart = [&] {
        timer->Start(7000, 50);
        restarted = timer->Expiry();
    };
    const std::pair<std::function<void()>, bool> cases[] = {
        {[&] { timer->Stop(); }, false},
        {restart, true},
        {[&] { timer->Stop(), restart(); }, true},
        {[&] { timer.reset(); }, false},
    };
    for (const auto& [action, staysArmed] : cases) {
        timer = std::make_unique<PeriodicTimer>("t", Do(action));
        timer->Start(0, 100);
        keeper_.ProcessExpired(timer->Expiry());
        EXPECT_EQ(keeper_.ActiveCount(), staysArmed ? 1U : 0U);
        EXPECT_EQ(timer != nullptr && timer->IsActive(), staysArmed);
        EXPECT_TRUE(!staysArmed || timer->Expiry() == Plus(restarted, 50));
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

TEST_F(TimerTest, StartSpreadsTheFirstExpiryOverHalfAPeriod) {
    const std::pair<unsigned int, unsigned int> cases[] = {
        {0, 1}, {1, 1}, {3, 1}, {1000, 500}, {UINT32_MAX, INT_MAX}};
    for (const auto& [periodMs, belowMs] : cases) {
        PeriodicTimer timer("p");
        int64_t longestMs = 0;
        for (int i = 0; i < 300; ++i) {
            const TimeValue before = TimeValue::Now();
            timer.Start(periodMs);
            const TimeValue after = TimeValue::Now();
            EXPECT_TRUE(timer.Expiry() >= before) << periodMs;
            EXPECT_TRUE(Plus(after, belowMs - 1) >= timer.Expiry()) << periodMs;
            longestMs = std::max(longestMs, (timer.Expiry() - before).Milliseconds());
        }
        EXPECT_GE(longestMs, int64_t{belowMs / 2}) << periodMs;
        const TimeValue first = timer.Expiry();
        keeper_.ProcessExpired(first);
        EXPECT_EQ(timer.Expiry(), Plus(first, std::max(periodMs, 1U)));
    }
}

TEST_F(TimerTest, TimeToNextAndDumpShowWhatIsLeftButNothingBelowZero) {
    keeper_.ResetExpiredCount();
    EXPECT_EQ(keeper_.TimeToNext(), TimeValue(-1, 0));
    EXPECT_EQ(DumpText(), "0 Timers Expired\n0 Active Timer(s)\n");
    Shot fired("fired"), late("late"), nameless{SharedText()}, far("far");
    fired.StartAt({0, 0});
    keeper_.ProcessExpired({0, 0});
    far.StartAt({INT_MAX, 0});
    EXPECT_GT(keeper_.TimeToNext().Milliseconds(), INT_MAX);
    nameless.StartAt({0, 2});
    late.StartAt({0, 1});
    EXPECT_EQ(keeper_.TimeToNext(), TimeValue(0, 0));
    const std::string head = "1 Timers Expired\n3 Active Timer(s)\nlate -> 0\n -> 0\nfar -> ";
    const std::string text = DumpText();
    ASSERT_EQ(text.substr(0, head.size()), head);
    EXPECT_GT(std::stoll(text.substr(head.size())), INT_MAX);
}

}  // namespace
