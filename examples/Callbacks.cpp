// Callback objects: a modem reports to a function and to a member function.
#include "core/callback/Callback.h"

#include <cstdio>

using Quenda::CallbackRef;
using Quenda::MakeCallback;

namespace {

void PrintLock(bool locked) {
    std::printf("function: %s\n", locked ? "locked" : "lost");
}

class Counter {
public:
    void Count(bool /*locked*/) { std::printf("member: change %d\n", ++changes_); }

private:
    int changes_ = 0;
};

}  // namespace

int main() {
    Counter counter;  // outlives the callback that calls it
    CallbackRef<void(bool)> callback = MakeCallback(PrintLock);
    const CallbackRef<void(bool)> copy = callback;  // two owners
    callback->Invoke(true);
    callback = MakeCallback(&counter, &Counter::Count);
    callback->Invoke(false);
    copy->Invoke(false);  // the first object still lives: the copy owns it
    callback.Release();
    if (!callback) {
        std::puts("released");
    }
}
