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
            std::exit(EXIT_SUCCESS);
        }
    }

    using Callback = Quenda::MemberCallback2<Beacon, unsigned int, void*>;

    int beats_ = 0;
    Quenda::PeriodicTimer timer_{
        "beacon", Quenda::TimerBase::Callback(new Callback(this, &Beacon::OnTimeout))};
};

}  // namespace

int main() {
    Quenda::EventLoop& loop = Quenda::EventLoop::Instance();
    if (!loop.Init()) {
        return EXIT_FAILURE;
    }
    const Beacon beacon;
    loop.Run();
    return EXIT_FAILURE;  // only when the loop broke down
}
