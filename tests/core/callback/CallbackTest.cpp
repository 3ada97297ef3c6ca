#include "core/callback/Callback.h"

#include <gtest/gtest.h>

using namespace Quenda;

namespace {

// Counts its destruction and may own the next one of a chain.
struct Link : CallbackBuffer1<bool> {
    explicit Link(int& deletions) : deleted(deletions) {}
    ~Link() override { ++deleted; }
    void Invoke(bool) override {}

    int& deleted;
    CallbackRef1<bool> next;
};

TEST(CallbackRefTest, LastHandleDeletesTheObjectOnce) {
    int deleted = 0;
    CallbackRef1<bool> first(new Link(deleted));
    {
        CallbackRef1<bool> second = first;
        const CallbackRef1<bool> moved = std::move(second);
        const CallbackRef1<bool>& alias = first;
        first = alias;
        first.Release();
        first.Release();
        EXPECT_EQ(deleted, 0);
        EXPECT_TRUE(moved);
    }
    EXPECT_EQ(deleted, 1);
    EXPECT_FALSE(first);
}

TEST(CallbackRefTest, TakesOverAHandleThatTheOldTargetOwns) {
    int deleted = 0;
    auto* const head = new Link(deleted);
    head->next = CallbackRef1<bool>(new Link(deleted));
    CallbackRef1<bool> ref(head);
    ref = head->next;
    EXPECT_EQ(deleted, 1);
    ref = CallbackRef1<bool>();
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
    const CallbackRef2<unsigned int, void*> ref(
        new MemberCallback2<Base, unsigned int, void*>(&object, &Base::Tick));
    unsigned int seen = 0;
    ref->Invoke(4294967295U, &seen);
    EXPECT_EQ(seen, 4294967295U);
}

bool received = false;

TEST(GlobalCallbackTest, CallsTheFunction) {
    const CallbackRef1<bool> ref(new GlobalCallback1<bool>([](bool value) { received = value; }));
    ref->Invoke(true);
    EXPECT_TRUE(received);
}

}  // namespace
