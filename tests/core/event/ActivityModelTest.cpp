// Random operations on activities, also within their callbacks, and on the simplest model: the
// letters of the present pass and those of the next.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "core/event/ActivitySet.h"
#include "core/text/FormatText.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

struct ActivityModelTest : testing::Test {
    bool Unqueue(char name) {
        const bool wasQueued = (current_ + next_).find(name) != std::string::npos;
        current_.erase(std::remove(current_.begin(), current_.end(), name), current_.end());
        next_.erase(std::remove(next_.begin(), next_.end(), name), next_.end());
        return wasQueued;
    }
    void Make(char name) {
        (void)Unqueue(name);
        holds_[name] = std::make_unique<ActivityHold>(
            ActivityHold::CallbackHandle(
                new CallbackTo<bool(int)>([this, name](int) { return Call(name); })),
            std::string(1, name));
    }

    void Operate() {
        const char name = "abcd"[random_() % 4];
        const char operation = "AARM"[random_() % 4];  // add, remove or make it
        where_ += std::string(" ") + operation + name;
        if (operation == 'M') {
            Make(name);
        } else if (operation == 'R') {
            EXPECT_EQ(set_->Remove(holds_[name].get()), Unqueue(name)) << where_;
        } else {
            EXPECT_TRUE(set_->Add(holds_[name].get())) << where_;
            next_ += (current_ + next_).find(name) == std::string::npos ? std::string(1, name) : "";
        }
    }

    bool Call(char name) {
        where_ += std::string(" calls ") + name;
        EXPECT_TRUE(!isOver_ && current_.find(name) == 0) << where_;
        Operate();
        isDone_ = random_() % 2 == 0;
        isOver_ = current_.find(name) != 0;
        if (!isOver_) {
            (void)Unqueue(name);
            next_ += isDone_ ? "" : std::string(1, name);
        }
        return isDone_;
    }

    std::string Lines(const char* heading, const std::string& list) {
        std::string text = FormatText("%s activities: %zu\n", heading, list.size());
        for (const char name : list) {
            text += FormatText(" %p - %c\n", static_cast<void*>(holds_[name].get()), name);
        }
        return text;
    }

    std::mt19937 random_{1};
    std::string current_, next_, where_;
    bool isOver_ = false;
    bool isDone_ = true;
    std::unique_ptr<ActivitySet> set_ = std::make_unique<ActivitySet>();
    std::map<char, std::unique_ptr<ActivityHold>> holds_;
};

TEST_F(ActivityModelTest, HoldsRunAsTwoListsSay) {
    for (const char name : std::string("abcd")) {
        Make(name);
    }
    for (int round = 0; !HasFailure() && (round < 5000 || current_.empty() || next_.empty());
         ++round) {
        where_ = "round " + std::to_string(round) + ":";
        Operate();
        Operate();
        std::swap(current_, next_);
        isOver_ = false;
        isDone_ = true;
        EXPECT_EQ(set_->Run(0), isDone_) << where_;
        EXPECT_TRUE(isOver_ || current_.empty()) << where_;
        EXPECT_EQ(set_->HasActivities(), !current_.empty() || !next_.empty()) << where_;
        EXPECT_EQ(set_->Text().Get(), Lines("Current", current_) + Lines("New", next_)) << where_;
    }
    set_.reset();
    for (const auto& [name, hold] : holds_) {
        EXPECT_EQ(hold->links.list, nullptr) << name;  // it may outlive the set
    }
}

}  // namespace
