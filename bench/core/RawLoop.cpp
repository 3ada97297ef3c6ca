#include <sys/epoll.h>
#include <unistd.h>

#include "bench/core/DispatchPeers.h"

namespace Bench {

namespace {

class Loop : public LoopPeer {
public:
    Loop(Counters& counters, int timeoutMs)
        : counters_(counters), timeoutMs_(timeoutMs), epollFd_(epoll_create1(EPOLL_CLOEXEC)) {
        for (size_t i = 0; i < counters.Fds().size(); ++i) {
            epoll_event event{};
            event.events = EPOLLIN;
            event.data.u64 = i;
            (void)epoll_ctl(epollFd_, EPOLL_CTL_ADD, counters.Fds()[i], &event);
        }
    }
    ~Loop() override { (void)close(epollFd_); }

    void Run() override {
        for (;;) {
            const int count = epoll_wait(epollFd_, events_, kMaxEvents, timeoutMs_);
            for (int i = 0; i < count; ++i) {
                if (!counters_.Handle(events_[i].data.u64)) {
                    return;
                }
            }
        }
    }

private:
    static constexpr int kMaxEvents = 128;

    Counters& counters_;
    int timeoutMs_;
    int epollFd_;
    epoll_event events_[kMaxEvents] = {};
};

}  // namespace

std::unique_ptr<LoopPeer> RawLoop(Counters& counters) {
    return std::make_unique<Loop>(counters, -1);
}

std::unique_ptr<LoopPeer> RawTimedLoop(Counters& counters) {
    return std::make_unique<Loop>(counters, 1000);
}

}  // namespace Bench
