// Callback objects: the modem tells whoever asked to know.
#include "core/callback/Callback.h"

#include <cstdio>

using Quenda::CallbackRef1;
using Quenda::GlobalCallback1;
using Quenda::MemberCallback;

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
    CallbackRef1<bool> callback(new GlobalCallback1<bool>(PrintLock));
    const CallbackRef1<bool> copy = callback;  // two owners
    callback->Invoke(true);
    callback =
        CallbackRef1<bool>(new MemberCallback<Counter, void(bool)>(&counter, &Counter::Count));
    callback->Invoke(false);
    copy->Invoke(false);  // the first object still lives: the copy owns it
    callback.Release();
    if (!callback) {
        std::puts("released");
    }
}
