#include "core/event/EventLoop.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "core/event/FileDescriptorHandler.h"
#include "core/log/Log.h"
#include "core/numbers/TargetNumbers.h"
#include "core/output/Writable.h"
#include "core/signals/SignalWindow.h"
#include "core/timer/TimeKeeper.h"

namespace Quenda {

namespace {

// epoll_pwait delivers signals only while it waits. Without this, a loop that never waits, because
// it always has events or always fails, would never receive one.
void DeliverSignals() {
    const SignalWindow window;
}

constexpr uint32_t kReadEvents = EPOLLIN | EPOLLERR | EPOLLHUP | EPOLLRDHUP;

epoll_event EventFor(const FileDescriptorHandler& handler) {
    epoll_event event{};
    event.events = handler.Events();
    event.data.fd = handler.Fd();
    return event;
}

void Sleep(Writable* out, const char* milliseconds) {
    const int n = StrToInt32(milliseconds, 10);
    out->Printf("Sleeping for %i milliseconds.\n", n);
    // A negative number, taken as unsigned microseconds, would be more than an hour.
    if (n > 0) {
        usleep(static_cast<useconds_t>(n) * 1000U);
    }
}

}  // namespace

EventLoop& EventLoop::Instance() {
    static EventLoop instance;
    return instance;
}

EventLoop::EventLoop()
    : self_(this, [](EventLoop*) {}),
      timeKeeper_(&TimeKeeper::Instance()),
      activities_(std::make_unique<ActivitySet>()) {}

EventLoop::~EventLoop() {
    if (epollFd_ > 0) {
        (void)close(epollFd_);  // at exit, a failure has no effect
    }
}

bool EventLoop::Init() {
    if (epollFd_ >= 0) {
        return true;
    }
    epollFd_ = epoll_create(10);  // any size above 0: since Linux 2.6.8 it is ignored
    if (epollFd_ == -1) {
        const int error = errno;
        LogError("epoll_create() failed: %s (%d)\n", strerror(error), error);
        return false;
    }
    // Children must not inherit this descriptor.
    (void)fcntl(epollFd_, F_SETFD, FD_CLOEXEC);  // cannot fail on a valid descriptor
    return true;
}

bool EventLoop::AddHandler(FileDescriptorHandler* handler) {
    const int fd = handler->Fd();
    if (fd < 0) {
        LogMessage(2, "In EventLoop::AddHandler, File Descriptor is bad(%d), name: %s.\n", fd,
                   handler->Name());
        return false;
    }
    (void)fcntl(fd, F_SETFD, FD_CLOEXEC);  // a closed descriptor shows in epoll_ctl below
    if (handlers_.count(fd) != 0) {
        LogMessage(2, "In EventLoop::AddHandler, Handler already present, name: %s.\n",
                   handler->Name());
        return false;
    }
    // A guard only: the look-up above leaves no case for it.
    if (!handlers_.emplace(fd, handler).second) {
        LogMessage(2, "In EventLoop::AddHandler, failed to add handler %d/%s.\n", fd,
                   handler->Name());
        return false;
    }
    handler->ResetCounts();
    handler->loop_ = self_;
    epoll_event event = EventFor(*handler);
    if (epoll_ctl(epollFd_, EPOLL_CTL_ADD, fd, &event) == -1) {
        LogError("epoll_ctl_add failed on(%s) (%d/%d): %s\n", handler->Name(), epollFd_, fd,
                 strerror(errno));
    }
    handlersChanged_ = true;
    return true;
}

bool EventLoop::RemoveHandler(FileDescriptorHandler* handler) {
    const auto found = handlers_.find(handler->Fd());
    if (found == handlers_.end()) {
        return false;
    }
    if (epoll_ctl(epollFd_, EPOLL_CTL_DEL, handler->Fd(), nullptr) == -1 && errno != ENOENT) {
        LogError("epoll_ctl_del failed on(%s) (%d/%d): %s\n", handler->Name(), epollFd_,
                 handler->Fd(), strerror(errno));
    }
    found->second->loop_.reset();
    handlers_.erase(found);
    handlersChanged_ = true;
    return true;
}

bool EventLoop::ModifyHandler(FileDescriptorHandler* handler) {
    epoll_event event = EventFor(*handler);
    if (epoll_ctl(epollFd_, EPOLL_CTL_MOD, handler->Fd(), &event) == -1) {
        LogError("epoll_ctl_mod failed on(%s) (%d/%d): %s\n", handler->Name(), epollFd_,
                 handler->Fd(), strerror(errno));
        return false;
    }
    return true;
}

bool EventLoop::Run() {
    terminate_ = false;
    isSound_ = true;
    while (!terminate_) {
        (void)WaitAndDispatch(false);
        timeKeeper_->ProcessExpired();
        activities_->Run(0);
    }
    LogError("EventLoop terminated\n");
    return isSound_;
}

bool EventLoop::Poll() {
    return WaitAndDispatch(true);
}

bool EventLoop::WaitAndDispatch(bool poll) {
    const int timeoutMs = poll ? 0 : NextTimeoutMs();
    const int count = epoll_pwait(epollFd_, events_, kMaxEvents, timeoutMs, SignalMaskInWindow());
    if (count == -1) {
        const int error = errno;
        if (error != EINTR) {
            LogError("EventLoop error %s (%d)\n", strerror(error), error);
            DeliverSignals();
        }
        if (IsFatalError(error)) {
            terminate_ = true;
            isSound_ = false;
            return false;
        }
        return true;
    }
    if (count > 0 || timeoutMs == 0) {
        DeliverSignals();
    }
    Dispatch(count);
    return true;
}

int EventLoop::NextTimeoutMs() const {
    if (activities_->HasActivities()) {
        return 0;
    }
    // Without a timer the loop still wakes up once a second.
    return WaitTimeoutMs(timeKeeper_->IsEmpty() ? TimeValue(1, 0) : timeKeeper_->TimeToNext());
}

void EventLoop::Dispatch(int count) {
    for (int i = 0; i < count; ++i) {
        const uint32_t mask = events_[i].events;
        const auto found = handlers_.find(events_[i].data.fd);
        if (found == handlers_.end()) {
            continue;  // removed earlier in this batch
        }
        FileDescriptorHandler* const handler = found->second;
        if ((mask & kReadEvents) != 0) {
            ++handler->readCount_;
            handler->HandleRead();
        }
        // After any change the handler may be gone, so this write event is skipped, on purpose.
        // epoll reports it again at the next wait.
        if (handlersChanged_) {
            handlersChanged_ = false;
        } else if ((mask & EPOLLOUT) != 0) {
            ++handler->writeCount_;
            handler->HandleWrite();
        }
    }
}

bool EventLoop::IsFatalError(int error) {
    return error == EBADF;
}

int EventLoop::WaitTimeoutMs(const TimeValue& wait) {
    const int64_t milliseconds = wait.Milliseconds();
    if (milliseconds == 0 && wait.Nanoseconds() > 0) {
        return 1;
    }
    return static_cast<int>(std::min<int64_t>(milliseconds, INT_MAX));
}

void EventLoop::Dump(Writable* out) const {
    DumpHandlers(out);
    out->Puts("\n");
    timeKeeper_->Dump(out);
    out->Puts("\n");
    activities_->Dump(out);
}

void EventLoop::DumpHandlers(Writable* out) const {
    for (const auto& [fd, handler] : handlers_) {
        handler->Print(out);
    }
}

void EventLoop::DebugCommand(Writable* out, int argc, const char* const* argv) {
    if (out == nullptr) {
        return;
    }
    if (argc <= 0) {
        Dump(out);
    } else if (strcmp(argv[0], "fd") == 0) {
        DumpHandlers(out);
    } else if (strcmp(argv[0], "timer") == 0) {
        timeKeeper_->Dump(out);
    } else if (strcmp(argv[0], "act") == 0) {
        activities_->Dump(out);
    } else if (argc == 2 && strcmp(argv[0], "sleep") == 0) {
        Sleep(out, argv[1]);
    } else {
        out->Puts("Usage: [fd] | [timer] | [act] | [sleep MS]\n");
    }
}

}  // namespace Quenda
