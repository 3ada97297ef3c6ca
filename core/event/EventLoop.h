#pragma once

#include <sys/epoll.h>

#include <cstdint>
#include <map>
#include <memory>

#include "core/event/ActivitySet.h"
#include "core/timer/TimeValue.h"

namespace Quenda {

class FileDescriptorHandler;
class TimeKeeperIntf;
class Writable;

// The process's single-threaded event loop: waits with epoll(7) for descriptors and for the next
// timer, and gives deferred work one pass per turn. Handlers and activities are not owned.
// Signals that the process holds (SignalWindow) arrive while it waits, and when it looked for
// descriptors without a wait.
class EventLoop {
public:
    // The process's one loop, built on first use and destroyed at exit.
    static EventLoop& Instance();

    EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    ~EventLoop();

    // Must succeed before `Run`. Does nothing when called again.
    bool Init();

    // Registers a handler for its descriptor, which becomes close-on-exec. One handler per
    // descriptor: false, with a line in the log, for a second one and for a descriptor below 0.
    // When epoll refuses the descriptor, that is logged, too, but the handler stays registered
    // (silent) and the result is true.
    bool AddHandler(FileDescriptorHandler* handler);
    // Neither closes nor deletes the handler. False when its descriptor has no handler.
    bool RemoveHandler(FileDescriptorHandler* handler);
    // Passes the handler's present events on to epoll.
    bool ModifyHandler(FileDescriptorHandler* handler);

    // See ActivitySet.
    bool AddActivity(ActivityHold* hold) { return activities_->Add(hold); }
    bool RemoveActivity(ActivityHold* hold) { return activities_->Remove(hold); }

    // Runs until it is stopped, or until epoll reports that its own descriptor is no longer valid:
    // only then false. Either end is logged. A signal ends a wait early, which is harmless.
    bool Run();
    // For a callback: ends `Run` after this turn, whose timers and activities still get their pass.
    // Ends nested runs, too, and has no effect on a later one.
    void Stop() { terminate_ = true; }
    // Dispatches what is ready now, without waiting; runs neither timers nor activities.
    // False when the loop cannot go on. Not from within a handler's callback: it would take over
    // the events of the batch that is being dispatched.
    bool Poll();

    void Dump(Writable* out) const;
    void DumpHandlers(Writable* out) const;
    // The console's command for the loop: "fd", "timer", "act", "sleep MS", or nothing for all.
    // Does nothing when `out` is null.
    void DebugCommand(Writable* out, int argc, const char* const* argv);

    // Whether an error of the wait ends the loop (errno values).
    static bool IsFatalError(int error);
    // The time-out for epoll_wait(2) in milliseconds: rounded down, so that the loop never sleeps
    // past a timer. A wait of less than a millisecond becomes 1 ms, which is no busy poll. A wait
    // that an int cannot hold is cut: waking early is harmless.
    static int WaitTimeoutMs(const TimeValue& wait);

private:
    static constexpr int kMaxEvents = 128;  // taken from the kernel in one wait

    bool WaitAndDispatch(bool poll);
    int NextTimeoutMs() const;
    void Dispatch(int count);

    // Without a deleter: handlers hold weak references to it, to find out whether the loop
    // still exists.
    std::shared_ptr<EventLoop> self_;
    TimeKeeperIntf* timeKeeper_;
    int epollFd_ = -1;
    epoll_event events_[kMaxEvents] = {};
    bool handlersChanged_ = false;
    bool terminate_ = false;
    bool isSound_ = true;  // epoll's own descriptor is valid, as far as is known
    std::map<int, FileDescriptorHandler*> handlers_;
    std::unique_ptr<ActivitySet> activities_;
};

}  // namespace Quenda
