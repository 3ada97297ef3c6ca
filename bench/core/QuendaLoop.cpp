#include <sys/epoll.h>
#include <unistd.h>

#include <deque>

#include "bench/core/DispatchPeers.h"
#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"

namespace Bench {

namespace {

// Thrown by a handler to leave EventLoop::Run, whose regular end writes to the log.
struct LastCall {};

class Handler : public Quenda::FileDescriptorHandler {
public:
    // The handler closes its descriptor, so it gets one of its own.
    Handler(Counters& counters, size_t index)
        : FileDescriptorHandler("bench", dup(counters.Fds()[index]), EPOLLIN),
          counters_(counters),
          index_(index) {}

    void HandleRead() override {
        if (!counters_.Handle(index_)) {
            throw LastCall();
        }
    }
    void HandleWrite() override {}

private:
    Counters& counters_;
    size_t index_;
};

class Loop : public LoopPeer {
public:
    explicit Loop(Counters& counters) {
        (void)loop_.Init();
        for (size_t i = 0; i < counters.Fds().size(); ++i) {
            handlers_.emplace_back(counters, i);
            (void)loop_.AddHandler(&handlers_.back());
        }
    }

    void Run() override {
        try {
            loop_.Run();
        } catch (const LastCall&) {
        }
    }

private:
    Quenda::EventLoop loop_;
    std::deque<Handler> handlers_;
};

}  // namespace

std::unique_ptr<LoopPeer> QuendaLoop(Counters& counters) {
    return std::make_unique<Loop>(counters);
}

}  // namespace Bench
