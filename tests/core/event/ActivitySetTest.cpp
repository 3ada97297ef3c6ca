#include "core/event/ActivitySet.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <string>

#include "core/output/FormatText.h"
#include "core/output/StringWritable.h"
#include "tests/support/Capture.h"

using namespace Quenda;

namespace {

// A hold with its callback: notes its name and the argument, then acts.
struct Work {
    struct Call : ActivityHold::Callback {
        explicit Call(Work& work) : owner(work) {}
        bool Invoke(int argument) override {
            owner.journal += owner.hold->Name() + std::to_string(argument);
            const auto run = owner.action;  // the action may change
            return run();
        }
        Work& owner;
    };

    Work(std::string& notes, const char* name)
        : journal(notes), hold(std::make_unique<ActivityHold>(&call, name)) {}

    std::string& journal;
    Call call{*this};
    std::function<bool()> action = [] { return true; };
    std::unique_ptr<ActivityHold> hold;
};

class ActivitySetTest : public testing::Test {
protected:
    // What one pass over the set runs.
    std::string Pass(int argument = 0) {
        journal_.clear();
        result_ = set_.Run(argument);
        return journal_;
    }
    void Queue(std::initializer_list<Work*> works) {
        for (Work* work : works) {
            EXPECT_TRUE(set_.Add(work->hold.get()));
        }
    }

    std::string journal_;
    bool result_ = false;
    Work a_{journal_, "a"}, b_{journal_, "b"}, c_{journal_, "c"};
    ActivitySet set_;
};

TEST_F(ActivitySetTest, RunsEachOnceInOrderUntilItIsDone) {
    Queue({&b_, &a_, &b_});
    a_.action = [] { return false; };
    EXPECT_TRUE(set_.HasActivities());
    EXPECT_EQ(Pass(7), "b7a7");
    EXPECT_FALSE(result_);
    Queue({&a_, &c_});
    EXPECT_EQ(Pass(), "a0c0");
    a_.action = [] { return true; };
    EXPECT_EQ(Pass(), "a0");
    EXPECT_TRUE(result_);
    EXPECT_FALSE(set_.HasActivities());
    EXPECT_EQ(Pass(), "");
    EXPECT_TRUE(result_);
}

TEST_F(ActivitySetTest, WorkAddedDuringAPassWaitsForTheNext) {
    a_.action = [this] {
        Queue({&c_, &b_});
        return false;
    };
    Queue({&a_, &b_});
    EXPECT_EQ(Pass(), "a0b0");  // b was queued for this pass already
    EXPECT_EQ(Pass(), "c0a0");
}

TEST_F(ActivitySetTest, HoldThatRemovesRequeuesOrDestroysItselfEndsThePass) {
    const std::function<bool()> actions[] = {
        [this] { return set_.Remove(a_.hold.get()) && false; },
        [this] { return set_.Remove(a_.hold.get()) && set_.Add(a_.hold.get()) && false; },
        [this] {
            a_.hold.reset();
            return false;
        },
    };
    const char* const laterPasses[] = {"b0c0", "a0b0c0", "b0c0"};
    for (size_t i = 0; i < 3; ++i) {
        Queue({&a_, &b_, &c_});
        a_.action = actions[i];
        EXPECT_EQ(Pass(), "a0");
        EXPECT_FALSE(result_);
        a_.action = [] { return true; };
        std::string later = Pass();
        later += Pass();
        EXPECT_EQ(later, laterPasses[i]);
        EXPECT_FALSE(set_.HasActivities());
    }
}

TEST_F(ActivitySetTest, HoldMayRemoveOrDestroyOthersThatFollow) {
    Queue({&a_, &b_, &c_});
    a_.action = [this] {
        b_.hold.reset();
        return true;
    };
    EXPECT_EQ(Pass(), "a0c0");
    Queue({&a_, &c_});
    a_.action = [this] { return set_.Remove(c_.hold.get()); };
    EXPECT_EQ(Pass(), "a0");
    EXPECT_FALSE(set_.HasActivities());
}

TEST_F(ActivitySetTest, NullsAndForeignHoldsAreRefusedAndAMissingCallbackIsDone) {
    EXPECT_FALSE(set_.Add(nullptr));
    EXPECT_FALSE(set_.Remove(nullptr));
    EXPECT_FALSE(set_.Remove(a_.hold.get()));
    ActivityHold idle(nullptr);
    EXPECT_TRUE(set_.Add(&idle));
    EXPECT_EQ(Pass(), "");
    EXPECT_TRUE(result_);
    EXPECT_FALSE(set_.HasActivities());
}

TEST_F(ActivitySetTest, HoldsOutliveTheirSet) {
    {
        ActivitySet other;
        other.Add(a_.hold.get());
        other.Add(b_.hold.get());
    }
    Queue({&b_, &a_});
    EXPECT_EQ(Pass(), "b0a0");
}

TEST_F(ActivitySetTest, TextAndDumpListBothPassesWithHeadingsOfTheirOwn) {
    ActivityHold nameless(nullptr);
    a_.action = [this] {
        set_.Remove(a_.hold.get());  // ends the pass: b and the nameless one stay
        return set_.Add(c_.hold.get());
    };
    Queue({&a_, &b_});
    set_.Add(&nameless);
    Pass();
    const auto text = [&](const char* current, const char* before, const char* next) {
        const auto entry = [&](const ActivityHold& hold) {
            return before + FormatText("%p - %s\n", static_cast<const void*>(&hold), hold.Name());
        };
        return current + entry(*b_.hold) + entry(nameless) + next + entry(*c_.hold);
    };
    EXPECT_EQ(set_.Text().Get(), text("Current activities: 2\n", " ", "New activities: 1\n"));
    StringWritable out;
    set_.Dump(&out);
    EXPECT_EQ(out.Text(), text("Current Activities: 2\n", "", "New Activities: 1\n"));
    Capture capture(STDOUT_FILENO);
    a_.hold->Print();
    nameless.Print();
    EXPECT_EQ(capture.Stop(), " Print name a   -  Print name    - ");
}

}  // namespace
