// A long job in short pieces: between two of them the loop serves timers and descriptors.
#include <cstdio>
#include <cstdlib>

#include "core/event/ActivitySet.h"
#include "core/event/EventLoop.h"

namespace {

class Summing {
public:
    explicit Summing(Quenda::EventLoop& loop) : loop_(loop) { (void)loop.AddActivity(&hold_); }

private:
    // True when the job is done; false asks for another call on the loop's next turn.
    bool AddTenMore(int /*unused*/) {
        for (int i = 0; i < 10; ++i) {
            sum_ += ++last_;
        }
        std::printf("the sum up to %d is %d\n", last_, sum_);
        if (last_ < 30) {
            return false;
        }
        loop_.Stop();
        return true;
    }

    Quenda::EventLoop& loop_;
    int last_ = 0;
    int sum_ = 0;
    Quenda::ActivityHold hold_{Quenda::MakeCallback(this, &Summing::AddTenMore), "summing"};
};

}  // namespace

int main() {
    Quenda::EventLoop& loop = Quenda::EventLoop::Instance();
    if (!loop.Init()) {
        return EXIT_FAILURE;
    }
    Summing summing(loop);
    return loop.Run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
