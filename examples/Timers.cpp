// A timer that beats three times, a fiftieth of a second apart.
#include <cstdio>
#include <cstdlib>

#include "core/event/EventLoop.h"
#include "core/timer/PeriodicTimer.h"

namespace {

class Beacon {
public:
    // The first beat at once, the others 20 ms after the one before.
    Beacon() { timer_.Start(0, 20); }

private:
    void OnTimeout(unsigned int /*nowMs*/, void* /*userData*/) {
        std::printf("beat %d\n", ++beats_);
        if (beats_ == 3) {
            timer_.Stop();
            Quenda::EventLoop::Instance().Stop();
        }
    }

    int beats_ = 0;
    Quenda::PeriodicTimer timer_{"beacon", Quenda::MakeCallback(this, &Beacon::OnTimeout)};
};

}  // namespace

int main() {
    Quenda::EventLoop& loop = Quenda::EventLoop::Instance();
    if (!loop.Init()) {
        return EXIT_FAILURE;
    }
    Beacon beacon;
    return loop.Run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
