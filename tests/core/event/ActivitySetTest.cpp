#include "core/event/ActivitySet.h"

#include <gtest/gtest.h>

#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

struct ActivitySetTest : testing::Test {
    // A hold that notes its name and then acts.
    std::unique_ptr<ActivityHold> Hold(const char* name, const std::function<bool()>& action) {
        return std::make_unique<ActivityHold>(
            ActivityHold::CallbackHandle(new CallbackTo<bool(int)>([this, name, action](int) {
                journal_ += name;
                return action();
            })),
            name);
    }
    // What one pass over the set runs.
    std::string Pass() {
        journal_.clear();
        (void)set_.Run(0);
        return journal_;
    }
    static bool Done() { return true; }

    std::string journal_;
    ActivitySet set_;
};

TEST_F(ActivitySetTest, HoldThatDestroysItselfEndsThePass) {
    std::unique_ptr<ActivityHold> a;
    a = Hold("a", [&] {
        a.reset();
        return true;
    });
    const auto b = Hold("b", Done);
    set_.Add(a.get());
    set_.Add(b.get());
    EXPECT_EQ(Pass(), "a");
    EXPECT_EQ(Pass(), "");
    EXPECT_EQ(Pass(), "b");
}

}  // namespace
