#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "core/event/EventLoop.h"
#include "core/timer/PeriodicTimer.h"
#include "tests/core/event/EventHandler.h"
#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"

using namespace Quenda;

namespace {

// Stands in for the kernel's wait, when it is set: gets the time-out, returns an errno value.
std::function<int(int timeoutMs)> kernelWait;

volatile sig_atomic_t signals = 0;
volatile sig_atomic_t epollFd = -1;

void CloseEpollOnSignal(int /*signal*/) {
    signals = signals + 1;
    close(epollFd);
}

class EventLoopRunTest : public testing::Test {
protected:
    EventLoopRunTest() {
        const auto before = OpenDescriptors();
        EXPECT_TRUE(loop_.Init());
        for (const auto& [fd, target] : OpenDescriptors()) {
            epollFd = before.count(fd) == 0 ? fd : epollFd;
        }
    }
    ~EventLoopRunTest() override { kernelWait = nullptr; }

    std::string Run() {
        Capture capture(STDERR_FILENO);
        loop_.Run();
        return capture.Stop();
    }
    // The time-out of the first wait of a run.
    int TimeoutMs() {
        int first = -1;
        kernelWait = [&first](int timeoutMs) {
            first = timeoutMs;
            return EBADF;
        };
        Run();
        return first;
    }

    EventLoop loop_;
};

struct Call : ActivityHold::Callback {
    explicit Call(std::function<bool()> target) : action(std::move(target)) {}
    bool Invoke(int /*argument*/) override { return action(); }
    std::function<bool()> action;
};

struct Tick : CallbackBuffer2<unsigned int, void*> {
    explicit Tick(std::string& notes) : journal(notes) {}
    void Invoke(unsigned int /*now*/, void* /*data*/) override { journal += "t"; }
    std::string& journal;
};

TEST_F(EventLoopRunTest, EndsWhenItsDescriptorIsClosed) {
    std::string journal;
    EventHandler handler("h");
    PeriodicTimer timer("t", TimerBase::Callback(new Tick(journal)));
    Call call([&journal] {
        journal += "a";
        return true;
    });
    ActivityHold hold(&call);
    handler.onRead = [&] {
        journal += "h";
        timer.Start(0, 1000000);
        loop_.AddActivity(&hold);
        close(epollFd);
    };
    loop_.AddHandler(&handler);
    EXPECT_EQ(Run(), "EventLoop error Bad file descriptor (9)\nEventLoop terminated\n");
    EXPECT_EQ(journal, "hta");
}

TEST_F(EventLoopRunTest, SignalInTheWaitMaskArrivesOnlyInTheWaitAndEndsItQuietly) {
    sigset_t usr1, nothing, old;
    sigemptyset(&nothing);
    sigemptyset(&usr1);
    sigaddset(&usr1, SIGUSR1);
    sigprocmask(SIG_BLOCK, &usr1, &old);
    signal(SIGUSR1, CloseEpollOnSignal);
    raise(SIGUSR1);
    EXPECT_EQ(signals, 0);
    loop_.SetWaitSignalMask(nothing);
    EXPECT_EQ(Run(), "EventLoop error Bad file descriptor (9)\nEventLoop terminated\n");
    EXPECT_EQ(signals, 1);
    raise(SIGUSR1);
    EXPECT_EQ(signals, 1);
    signal(SIGUSR1, SIG_IGN);  // discards the pending one
    sigprocmask(SIG_SETMASK, &old, nullptr);
}

TEST_F(EventLoopRunTest, OnlyABadDescriptorEndsItAndOtherErrorsAreLoggedEachTime) {
    const std::vector<int> errors = {EINTR, EINVAL, EINTR, EFAULT, EBADF};
    size_t turn = 0;
    kernelWait = [&](int /*timeoutMs*/) { return errors.at(turn++); };
    EXPECT_EQ(Run(),
              "EventLoop error Invalid argument (22)\nEventLoop error Bad address (14)\n"
              "EventLoop error Bad file descriptor (9)\nEventLoop terminated\n");
    turn = 0;
    Capture capture(STDERR_FILENO);
    for (const int error : errors) {
        EXPECT_EQ(loop_.Poll(), error != EBADF) << error;
    }
}

TEST_F(EventLoopRunTest, WaitsForTheNextTimerOrASecondAndNotAtAllForActivities) {
    EXPECT_EQ(TimeoutMs(), 1000);
    PeriodicTimer timer("t");
    timer.Start(0, UINT32_MAX);
    timer.StartAt({INT_MAX, 0});
    EXPECT_EQ(TimeoutMs(), INT_MAX);
    TimeValue soon;
    soon.SetToNowPlus(600000);
    timer.StartAt(soon);
    const int timeoutMs = TimeoutMs();
    EXPECT_LE(timeoutMs, 600000);
    EXPECT_GT(timeoutMs, 1000);
    ActivityHold hold(nullptr);
    loop_.AddActivity(&hold);
    EXPECT_EQ(TimeoutMs(), 0);
    timer.StartAt({0, 0});
    EXPECT_EQ(TimeoutMs(), 0);
}

}  // namespace

// Takes the place of the C library's own in this program.
extern "C" int epoll_pwait(int fd, epoll_event* events, int count, int timeoutMs,
                           const sigset_t* mask) {
    if (kernelWait) {
        errno = kernelWait(timeoutMs);
        return -1;
    }
    return static_cast<int>(
        syscall(SYS_epoll_pwait, fd, events, count, timeoutMs, mask, _NSIG / 8));
}
