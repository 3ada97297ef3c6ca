#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <memory>
#include <string>

#include "core/output/StringWritable.h"
#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"

using namespace Quenda;

namespace {

// Fires once and then stays active, out of the queue.
struct Shot : TimerBase {
    using TimerBase::TimerBase;
    void Expire(const TimeValue& now) override { (void)CallBack(now); }
};

using Action = std::function<void(unsigned int, void*)>;

struct Call : CallbackBuffer2<unsigned int, void*> {
    explicit Call(Action target) : action(std::move(target)) {}
    void Invoke(unsigned int now, void* data) override { action(now, data); }
    Action action;
};

TimerBase::Callback Do(const std::function<void()>& action) {
    return TimerBase::Callback(new Call([action](unsigned int, void*) { action(); }));
}

TimeValue Plus(TimeValue time, uint32_t milliseconds) {
    time.AddMilliseconds(milliseconds);
    return time;
}

class TimerTest : public testing::Test {
protected:
    void SetUp() override { keeper_.ResetExpiredCount(); }
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
    EXPECT_EQ(keeper_.ActiveCount(), 3U);
    keeper_.ProcessExpired({0, 999999999});
    EXPECT_EQ(journal_, "");
    keeper_.ProcessExpired({1, 0});
    EXPECT_EQ(journal_, "cb");
    EXPECT_TRUE(b.IsActive());
    b.Stop();
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
    Shot timer("t", TimerBase::Callback(new Call([](unsigned int now, void* data) {
                   *static_cast<unsigned int*>(data) = now;
               })));
    timer.SetUserData(&seen);
    timer.StartAt({4294967, 0});
    keeper_.ProcessExpired({4294967, 295999999});
    EXPECT_EQ(seen, UINT32_MAX);
    timer.StartAt({4294967, 0});
    keeper_.ProcessExpired({4294967, 296000000});
    EXPECT_EQ(seen, 0U);
}

TEST_F(TimerTest, CallbackMayStopRestartOrDestroyItsOwnTimer) {
    std::unique_ptr<PeriodicTimer> timer;
    TimeValue restarted;
    const struct {
        const char* what;
        std::function<void()> action;
        bool survives;
        bool staysActive;
    } cases[] = {
        {"stop", [&] { timer->Stop(); }, true, false},
        {"restart", [&] { timer->Start(7000, 50), restarted = timer->Expiry(); }, true, true},
        {"stop and restart",
         [&] {
             timer->Stop();
             timer->Start(9000, 50);
             restarted = timer->Expiry();
         },
         true, true},
        {"destroy", [&] { timer.reset(); }, false, false},
    };
    for (const auto& c : cases) {
        timer = std::make_unique<PeriodicTimer>("t", Do(c.action));
        timer->Start(0, 100);
        keeper_.ProcessExpired(timer->Expiry());
        EXPECT_EQ(timer != nullptr, c.survives) << c.what;
        EXPECT_EQ(keeper_.ActiveCount(), c.staysActive ? 1U : 0U) << c.what;
        if (c.survives) {
            EXPECT_EQ(timer->IsActive(), c.staysActive) << c.what;
        }
        if (c.staysActive) {
            EXPECT_EQ(timer->Expiry(), Plus(restarted, 50)) << c.what;
        }
    }
}

TEST_F(TimerTest, CallbackMayStopRestartOrDestroyOthersThatAreDue) {
    auto destroyed = std::make_unique<Shot>("d", Note("d"));
    Shot stopped("s", Note("s"));
    Shot moved("m", Note("m"));
    Shot added("a", Note("a"));
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

TEST_F(TimerTest, CallbackThatRunsAPassMayDestroyItsTimerInside) {
    std::unique_ptr<Shot> timer;
    Shot killer("k", Do([&] { timer.reset(); }));
    timer = std::make_unique<Shot>("t", Do([&] {
                                       killer.StartAt({1, 0});
                                       keeper_.ProcessExpired({1, 0});
                                   }));
    timer->StartAt({1, 0});
    keeper_.ProcessExpired({1, 0});
    EXPECT_EQ(timer, nullptr);
}

TEST_F(TimerTest, StartSpreadsTheFirstExpiryOverHalfAPeriod) {
    const struct {
        unsigned int periodMs;
        unsigned int belowMs;  // of the random delay
    } cases[] = {{0, 1}, {1, 1}, {2, 1}, {3, 1}, {1000, 500}, {UINT32_MAX, INT_MAX}};
    for (const auto& c : cases) {
        PeriodicTimer timer("p");
        int64_t longestMs = 0;
        for (int i = 0; i < 300; ++i) {
            const TimeValue before = TimeValue::Now();
            timer.Start(c.periodMs);
            const TimeValue after = TimeValue::Now();
            EXPECT_TRUE(timer.Expiry() >= before) << c.periodMs;
            EXPECT_TRUE(Plus(after, c.belowMs - 1) >= timer.Expiry()) << c.periodMs;
            longestMs = std::max(longestMs, (timer.Expiry() - after).Milliseconds());
        }
        EXPECT_GE(longestMs, c.belowMs > 1 ? int64_t{c.belowMs / 2} : -1) << c.periodMs;
        const TimeValue first = timer.Expiry();
        keeper_.ProcessExpired(first);
        EXPECT_EQ(timer.Expiry(), Plus(first, std::max(c.periodMs, 1U)));
    }
}

TEST_F(TimerTest, PeriodOfZeroCountsAsOneMillisecond) {
    PeriodicTimer timer("p");
    const TimeValue before = TimeValue::Now();
    timer.Start(500, 0);
    const TimeValue first = timer.Expiry();
    EXPECT_TRUE(first >= Plus(before, 500));
    keeper_.ProcessExpired(first);
    EXPECT_EQ(timer.Expiry(), Plus(first, 1));
}

TEST_F(TimerTest, TimeToNextIsMinusOneZeroOrTheTimeLeft) {
    EXPECT_EQ(keeper_.TimeToNext(), TimeValue(-1, 0));
    Shot late("l"), next("n");
    next.StartAt({INT_MAX, 0});
    const TimeValue left = keeper_.TimeToNext();
    EXPECT_GT(left.Milliseconds(), INT_MAX);
    EXPECT_TRUE(TimeValue(INT_MAX, 0) >= left);
    late.StartAt({0, 1});
    EXPECT_EQ(keeper_.TimeToNext(), TimeValue(0, 0));
}

TEST_F(TimerTest, DumpListsTimersByExpiryWithTheTimeLeft) {
    EXPECT_EQ(DumpText(), "0 Timers Expired\n0 Active Timer(s)\n");
    Shot fired("fired"), late("late"), nameless{SharedText()}, far("far");
    fired.StartAt({0, 0});
    keeper_.ProcessExpired({0, 0});
    far.StartAt({INT_MAX, 0});
    nameless.StartAt({0, 2});
    late.StartAt({0, 1});
    const std::string head = "1 Timers Expired\n3 Active Timer(s)\nlate -> 0\n -> 0\nfar -> ";
    const std::string text = DumpText();
    ASSERT_EQ(text.substr(0, head.size()), head);
    EXPECT_GT(std::stoll(text.substr(head.size())), INT_MAX);
    keeper_.ResetExpiredCount();
    EXPECT_EQ(DumpText().substr(0, 17), "0 Timers Expired\n");
}

}  // namespace
