#include "core/event/ActivitySet.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/output/FormatText.h"
#include "core/output/StringWritable.h"
#include "tests/support/CallbackTo.h"
#include "tests/support/Capture.h"

using namespace Quenda;

namespace {

// Three holds, each of which notes its name and the argument and then acts.
class ActivitySetTest : public testing::Test {
protected:
    struct Work {
        Work(std::string& journal, const char* name)
            : call([this, &journal, name](int argument) {
                  journal += name + std::to_string(argument);
                  return action();
              }),
              hold(std::make_unique<ActivityHold>(&call, name)) {}
        std::function<bool()> action = [] { return true; };
        CallbackTo<bool(int)> call;
        std::unique_ptr<ActivityHold> hold;
    };

    // What one pass over the set runs.
    std::string Pass(int argument = 0) {
        journal_.clear();
        result_ = set_.Run(argument);
        return journal_;
    }
    bool Queue(std::initializer_list<Work*> works) {
        for (Work* work : works) {
            EXPECT_TRUE(set_.Add(work->hold.get()));
        }
        return true;
    }

    std::string journal_;
    bool result_ = false;
    Work a_{journal_, "a"}, b_{journal_, "b"}, c_{journal_, "c"};
    ActivitySet set_;
};

TEST_F(ActivitySetTest, RunsEachOnceInOrderUntilItIsDone) {
    ActivityHold idle(nullptr);
    EXPECT_EQ(Pass(), "");
    EXPECT_TRUE(result_);
    Queue({&b_, &a_, &b_});
    a_.action = [] { return false; };
    EXPECT_TRUE(set_.HasActivities());
    EXPECT_EQ(Pass(7), "b7a7");
    EXPECT_FALSE(result_);
    Queue({&a_, &c_});
    EXPECT_TRUE(set_.Add(&idle));
    EXPECT_EQ(Pass(), "a0c0");
    EXPECT_TRUE(result_);
    a_.action = [this] { return Queue({&c_, &b_}); };  // these wait for the next pass
    EXPECT_EQ(Pass(), "a0");
    EXPECT_EQ(Pass(), "c0b0");
    EXPECT_FALSE(set_.HasActivities());
    EXPECT_FALSE(set_.Add(nullptr) || set_.Remove(nullptr) || set_.Remove(&idle));
}

TEST_F(ActivitySetTest, HoldThatRemovesRequeuesOrDestroysItselfEndsThePass) {
    const auto remove = [this] { return set_.Remove(a_.hold.get()); };
    const std::pair<std::function<bool()>, std::string> cases[] = {
        {remove, "b0c0"},
        {[&] { return remove() && Queue({&a_}); }, "a0b0c0"},
        {[this] { return a_.hold.reset(), true; }, "b0c0"},
    };
    for (const auto& [action, later] : cases) {
        Queue({&a_, &b_, &c_});
        a_.action = action;
        EXPECT_EQ(Pass(), "a0");
        a_.action = [] { return true; };
        const std::string next = Pass();
        EXPECT_EQ(next + Pass(), later);
        EXPECT_FALSE(set_.HasActivities());
    }
}

TEST_F(ActivitySetTest, HoldMayRemoveOrDestroyOthersAndOutlivesItsSet) {
    Queue({&a_, &b_, &c_});
    a_.action = [this] { return b_.hold.reset(), true; };
    EXPECT_EQ(Pass(), "a0c0");
    {
        ActivitySet other;
        other.Add(c_.hold.get());
        other.Add(a_.hold.get());
    }
    Queue({&a_, &c_});
    a_.action = [this] { return set_.Remove(c_.hold.get()); };
    EXPECT_EQ(Pass(), "a0");
    EXPECT_FALSE(set_.HasActivities());
}

TEST_F(ActivitySetTest, TextAndDumpListBothPassesWithHeadingsOfTheirOwn) {
    ActivityHold nameless(nullptr);
    // Ends the pass: b and the nameless one stay in it.
    a_.action = [this] { return set_.Remove(a_.hold.get()) && Queue({&c_}); };
    Queue({&a_, &b_});
    set_.Add(&nameless);
    Pass();
    const auto line = [](const ActivityHold& hold) {
        return FormatText("%p - %s\n", static_cast<const void*>(&hold), hold.Name());
    };
    EXPECT_EQ(set_.Text().Get(), "Current activities: 2\n " + line(*b_.hold) + " " +
                                     line(nameless) + "New activities: 1\n " + line(*c_.hold));
    StringWritable out;
    set_.Dump(&out);
    EXPECT_EQ(out.Text(), "Current Activities: 2\n" + line(*b_.hold) + line(nameless) +
                              "New Activities: 1\n" + line(*c_.hold));
    Capture capture(STDOUT_FILENO);
    a_.hold->Print();
    nameless.Print();
    EXPECT_EQ(capture.Stop(), " Print name a   -  Print name    - ");
}

}  // namespace
