// The same descriptors on the event loops of several libraries.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace Bench {

// Counters of the kernel (eventfd(2)), one for each handler, and what a handler does when its
// own is ready.
class Counters {
public:
    explicit Counters(size_t count);
    Counters(const Counters&) = delete;
    Counters& operator=(const Counters&) = delete;
    ~Counters();

    const std::vector<int>& Fds() const { return fds_; }

    // Makes counters ready, one or all, and says how many calls of handlers shall follow.
    void StartRing(size_t calls);
    void StartBurst(size_t calls);
    void Stop();
    // Handler `i`: in the ring it takes the count and makes the next one ready; in the burst it
    // leaves its counter ready. False when it was the last call.
    bool Handle(size_t i);

private:
    std::vector<int> fds_;
    size_t callsLeft_ = 0;
    bool passOn_ = false;
};

// An event loop of the library with a handler for each counter. What follows a call that was the
// last is left to chance.
class LoopPeer {
public:
    virtual ~LoopPeer() = default;
    // Runs the loop until a handler was the last.
    virtual void Run() = 0;
};

std::unique_ptr<LoopPeer> QuendaLoop(Counters& counters);
// epoll_wait(2) and nothing else: without a time-out, and with the second after which our loop
// looks around, for which the kernel reads the clock.
std::unique_ptr<LoopPeer> RawLoop(Counters& counters);
std::unique_ptr<LoopPeer> RawTimedLoop(Counters& counters);
std::unique_ptr<LoopPeer> LibeventLoop(Counters& counters);
std::unique_ptr<LoopPeer> LibuvLoop(Counters& counters);

}  // namespace Bench
