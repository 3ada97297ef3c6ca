#include "core/callback/Callback.h"

#include <gtest/gtest.h>

using namespace Quenda;

namespace {

// Counts its deletion and may own the next one of a chain.
struct Link : CallbackBuffer1<bool> {
    explicit Link(int& deletions) : deleted(deletions) {}
    ~Link() override { ++deleted; }
    void Invoke(bool) override {}
    int& deleted;
    CallbackRef1<bool> next;
};

TEST(CallbackRefTest, LastHandleDeletesOnceEvenIfTheTargetOwnsItsSuccessor) {
    int deleted = 0;
    auto* const head = new Link(deleted);
    head->next = CallbackRef1<bool>(new Link(deleted));
    CallbackRef1<bool> ref(head);
    {
        CallbackRef1<bool> copy = ref;
        const CallbackRef1<bool> moved = std::move(copy);
        ref = moved;
    }
    EXPECT_EQ(deleted, 0);
    ref = head->next;
    EXPECT_EQ(deleted, 1);
    ref.Release();
    ref.Release();
    EXPECT_EQ(deleted, 2);
}

struct Base {
    virtual ~Base() = default;
    virtual void Tick(unsigned int, void*) { FAIL() << "not the most derived override"; }
};

struct Derived : Base {
    void Tick(unsigned int now, void* data) override { *static_cast<unsigned int*>(data) = now; }
};

TEST(MemberCallbackTest, CallsTheMostDerivedOverrideWithBothArguments) {
    Derived object;
    unsigned int seen = 0;
    CallbackRef2<unsigned int, void*>(
        new MemberCallback2<Base, unsigned int, void*>(&object, &Base::Tick))
        ->Invoke(UINT32_MAX, &seen);
    EXPECT_EQ(seen, UINT32_MAX);
}

}  // namespace
