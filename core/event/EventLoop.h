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

// The process's single-threaded event loop. Each turn waits with epoll(7) for descriptors and the
// next timer, and gives deferred work one pass. Handlers and activities are not owned.
// Signals that the process blocks (SignalWindow) are delivered during the wait. If the turn did not
// wait, they are delivered before its events.
class EventLoop {
public:
    // The process's loop, built on first use and destroyed at exit.
    static EventLoop& Instance();

    EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    ~EventLoop();

    // Must succeed before `Run`. Does nothing when called again.
    bool Init();

    // Registers a handler for its descriptor, which becomes close-on-exec. Logs and returns false
    // when the descriptor is below 0 or has a handler already. When epoll refuses the descriptor,
    // that is logged, but the handler stays registered, without events, and the result is true.
    bool AddHandler(FileDescriptorHandler* handler);
    // Neither closes nor deletes the handler. False when its descriptor has no handler.
    bool RemoveHandler(FileDescriptorHandler* handler);
    // Tells epoll the handler's present events.
    bool ModifyHandler(FileDescriptorHandler* handler);

    // See ActivitySet.
    bool AddActivity(ActivityHold* hold) { return activities_->Add(hold); }
    bool RemoveActivity(ActivityHold* hold) { return activities_->Remove(hold); }

    // Runs until `Stop`, or until epoll says that its own descriptor is invalid: only then the
    // result is false. Either end is logged. A signal ends a wait early, which is harmless.
    bool Run();
    // For a callback. Ends `Run`, and every run around it, after this turn's timers and activities.
    // Has no effect on a later run.
    void Stop() { terminate_ = true; }
    // Dispatches the descriptors that are ready now, without waiting. Runs neither timers nor
    // activities. False when the loop cannot go on. Do not call it in a handler's callback: it
    // would overwrite the events that are being dispatched.
    bool Poll();

    void Dump(Writable* out) const;
    void DumpHandlers(Writable* out) const;
    // Runs a console command: "fd", "timer", "act" or "sleep MS"; without a word, dumps everything.
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

    // Without a deleter. Handlers hold weak references to it, which tell whether the loop still
    // exists.
    std::shared_ptr<EventLoop> self_;
    TimeKeeperIntf* timeKeeper_;
    int epollFd_ = -1;
    epoll_event events_[kMaxEvents] = {};
    bool handlersChanged_ = false;
    bool terminate_ = false;
    bool isSound_ = true;  // false once epoll called its own descriptor invalid
    std::map<int, FileDescriptorHandler*> handlers_;
    std::unique_ptr<ActivitySet> activities_;
};

}  // namespace Quenda
