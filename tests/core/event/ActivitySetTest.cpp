#include "core/event/ActivitySet.h"

#include <gtest/gtest.h>

#include "core/output/StringWritable.h"
#include "core/text/FormatText.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

// Three holds, each of which notes its name and the argument and then acts.
struct ActivitySetTest : testing::Test {
    struct Work {
        Work(std::string& journal, const char* name) {
            auto* call = new CallbackTo<bool(int)>([this, &journal, name](int argument) {
                const bool isDone = action();
                journal += name + std::to_string(argument);  // the callback still lives
                return isDone;
            });
            hold = std::make_unique<ActivityHold>(ActivityHold::CallbackHandle(call), name);
        }
        std::function<bool()> action = [] { return true; };
        std::unique_ptr<ActivityHold> hold;
    };

    // What one pass over the set runs, with a "!" at the end when the last hold is not done.
    std::string Pass(int argument = 0) {
        journal_.clear();
        const bool isDone = set_.Run(argument);
        return journal_ + (isDone ? "" : "!");
    }
    bool Queue(std::initializer_list<Work*> works) {
        for (Work* work : works) {
            EXPECT_TRUE(set_.Add(work->hold.get()));
        }
        return true;
    }

    std::string journal_;
    Work a_{journal_, "a"}, b_{journal_, "b"}, c_{journal_, "c"};
    ActivitySet set_;
};

TEST_F(ActivitySetTest, RunsEachOnceInOrderUntilItIsDone) {
    Queue({&b_, &a_, &b_});
    a_.action = [] { return false; };
    EXPECT_EQ(Pass(7), "b7a7!");
    Queue({&a_, &c_});
    a_.action = [this] { return Queue({&c_, &b_}); };
    EXPECT_EQ(Pass(), "a0c0");
    EXPECT_EQ(Pass(), "b0") << "added during the pass before";
    EXPECT_FALSE(set_.HasActivities());
}

TEST_F(ActivitySetTest, HoldThatRemovesRequeuesOrDestroysItselfEndsThePass) {
    const auto remove = [this] { return set_.Remove(a_.hold.get()); };
    const std::pair<std::function<bool()>, std::string> cases[] = {
        {remove, "b0c0"},
        {[&] { return remove() && Queue({&a_}); }, "a0b0c0"},
        {[this] { return a_.hold.reset(), true; }, "b0c0"}};
    for (const auto& [action, later] : cases) {
        Queue({&a_, &b_, &c_});
        a_.action = action;
        EXPECT_EQ(Pass(), "a0");
        a_.action = [] { return true; };
        const std::string next = Pass();
        EXPECT_EQ(next + Pass(), later);
    }
}

TEST_F(ActivitySetTest, HoldMayDestroyOthersAndOutlivesItsSet) {
    ActivitySet().Add(c_.hold.get());
    Queue({&a_, &b_, &c_});
    a_.action = [this] { return b_.hold.reset(), true; };
    EXPECT_EQ(Pass(), "a0c0");
}

TEST_F(ActivitySetTest, TextAndDumpListBothPassesWithHeadingsOfTheirOwn) {
    // Ends the pass: b and c stay in it.
    a_.action = [this] { return set_.Remove(a_.hold.get()) && Queue({&a_}); };
    Queue({&a_, &b_, &c_});
    Pass();
    StringWritable out;
    set_.Dump(&out);
    out.Puts(set_.Text().Get());
    const auto line = [](const Work& work, const char* name) {
        return FormatText("%p - %s\n", static_cast<void*>(work.hold.get()), name);
    };
    const std::string a = line(a_, "a"), b = line(b_, "b"), c = line(c_, "c");
    EXPECT_EQ(out.Text(), "Current Activities: 2\n" + b + c + "New Activities: 1\n" + a +
                              "Current activities: 2\n " + b + " " + c + "New activities: 1\n " +
                              a);
}

}  // namespace
