// Callback objects: a modem reports to a function, to a member function and to an object.
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

// A callback class that this program defines. The last handle deletes the object.
struct Announcer : Quenda::CallbackBuffer<void(bool)> {
    ~Announcer() override { std::puts("announcer: deleted"); }
    void Invoke(bool /*locked*/) override { std::puts("announcer: called"); }
};

}  // namespace

int main() {
    Counter counter;  // outlives the callback that calls it
    CallbackRef<void(bool)> callback = MakeCallback(PrintLock);
    CallbackRef<void(bool)> copy = callback;  // two owners
    callback->Invoke(true);
    callback = MakeCallback(&counter, &Counter::Count);
    callback->Invoke(false);
    copy->Invoke(false);  // the first object still lives: the copy owns it
    copy = CallbackRef<void(bool)>(new Announcer);
    callback = copy;
    copy.Release();
    callback->Invoke(true);
    callback.Release();
    if (!callback) {
        std::puts("released");
    }
}
