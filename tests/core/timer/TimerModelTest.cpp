// Random operations on timers, also within their callbacks, and on the simplest model: a map of
// times to names.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "core/timer/PeriodicTimer.h"
#include "core/timer/TimeKeeper.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

TimeValue At(int64_t ms) {
    return {static_cast<int32_t>(ms / 1000), static_cast<int32_t>(ms % 1000 * 1000000)};
}

struct TimerModelTest : testing::Test {
    void Unqueue(char name) {
        for (auto entry = queue_.begin(); entry != queue_.end();) {
            entry = entry->second == name ? queue_.erase(entry) : std::next(entry);
        }
        expiryMs_.erase(name);
    }
    void Queue(char name, int64_t atMs) {
        Unqueue(name);
        queue_.emplace(atMs, name);  // behind those of the same time
        expiryMs_[name] = atMs;
    }
    // An idle one, whose period depends on its name.
    void Make(char name) {
        Unqueue(name);
        auto& timer = timers_[name];
        timer = std::make_unique<PeriodicTimer>(
            "t", TimerBase::Callback(new CallbackTo<void(unsigned int, void*)>(
                     [this, name](auto... arguments) { Fire(name, arguments...); })));
        timer->SetUserData(this);
        timer->Start(0, PeriodMs(name));
        timer->Stop();
    }
    static unsigned int PeriodMs(char name) { return 100U * static_cast<unsigned>(name - 'a' + 1); }

    void Operate() {
        const char name = "abcde"[random_() % 5];
        const auto operation = random_() % 5;
        where_ += std::string(" ") + "-MSAA"[operation] + name;  // nothing, make, stop or arm it
        if (operation == 1) {
            Make(name);
        } else if (operation == 2) {
            timers_[name]->Stop();
            Unqueue(name);
        } else if (operation > 2) {
            const int64_t atMs = nowMs_ + 100 * static_cast<int64_t>(random_() % 12) - 200;
            timers_[name]->StartAt(At(atMs));
            Queue(name, atMs);
        }
    }

    void Fire(char name, unsigned int nowMs, const void* data) {
        where_ += std::string(" fires ") + name;
        EXPECT_EQ(nowMs, static_cast<unsigned int>(nowMs_)) << where_;
        EXPECT_EQ(data, this) << where_;
        ASSERT_TRUE(!queue_.empty() && queue_.begin()->second == name) << where_;
        EXPECT_LE(queue_.begin()->first, nowMs_) << where_;
        queue_.erase(queue_.begin());
        EXPECT_EQ(keeper_.ActiveCount(), queue_.size()) << where_;
        const PeriodicTimer* const timer = timers_[name].get();
        Operate();
        Operate();
        if (timers_[name].get() == timer && expiryMs_.count(name) != 0) {
            Queue(name, expiryMs_[name] + PeriodMs(name));
        }
    }

    TimeKeeper& keeper_ = TimeKeeper::Instance();
    std::mt19937 random_{1};
    int64_t nowMs_ = 4294967000;  // soon past the 32 bits that callbacks get
    std::multimap<int64_t, char> queue_;
    std::map<char, int64_t> expiryMs_;  // of the active ones, also while they fire
    std::map<char, std::unique_ptr<PeriodicTimer>> timers_;
    std::string where_;
};

TEST_F(TimerModelTest, TimersFireAsAMapOfTimesSays) {
    for (const char name : std::string("abcde")) {
        Make(name);
    }
    for (int round = 0; round < 5000 && !HasFailure(); ++round) {
        nowMs_ += 50 * static_cast<int64_t>(random_() % (random_() % 4 == 0 ? 30 : 3));  // stalls
        where_ = "round " + std::to_string(round) + ":";
        Operate();
        keeper_.ProcessExpired(At(nowMs_));
        EXPECT_TRUE(queue_.empty() || queue_.begin()->first > nowMs_) << where_;
        EXPECT_EQ(keeper_.ActiveCount(), queue_.size()) << where_;
    }
}

}  // namespace
