#include "core/callback/Callback.h"

#include <gtest/gtest.h>

using namespace Quenda;

namespace {

using Ref = CallbackRef1<bool>;

// Notes, when it is deleted, what the handle holds by then.
struct Target : CallbackBuffer1<bool> {
    Target(const Ref& ref, std::vector<void*>& held) : handle(ref), heldAtEnd(held) {}
    ~Target() override { heldAtEnd.push_back(handle.Get()); }
    void Invoke(bool) override {}
    const Ref& handle;
    std::vector<void*>& heldAtEnd;
};

TEST(CallbackRefTest, LastHandleLetsGoOfTheTargetBeforeItDeletesItOnce) {
    std::vector<void*> held;
    Ref ref;
    for (int i = 0; i < 2; ++i) {
        ref = Ref(new Target(ref, held));
        std::vector<Ref> copies(3, ref);
        ref = std::move(copies[1]);
    }
    void* const second = ref.Get();
    EXPECT_EQ(held, std::vector<void*>{second});
    ref.Release();
    ref.Release();
    EXPECT_EQ(held, (std::vector<void*>{second, nullptr}));
}

}  // namespace
