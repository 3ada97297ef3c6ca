#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "core/timer/PeriodicTimer.h"
#include "tests/core/event/LoopFixture.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

const std::string kEnd = "EventLoop error Bad file descriptor (9)\nEventLoop terminated\n";

// Stands in for the kernel's wait, when it is set: gets the time-out, returns an errno value.
std::function<int(int timeoutMs)> kernelWait;

class EventLoopRunTest : public LoopFixture {
protected:
    ~EventLoopRunTest() override { kernelWait = nullptr; }
    std::string Run() {
        Capture capture(STDERR_FILENO);
        loop_.Run();
        return capture.Stop();
    }
    // The time-out of the first wait of a run.
    int TimeoutMs() {
        int first = -1;
        kernelWait = [&first](int timeoutMs) { return first = timeoutMs, EBADF; };
        EXPECT_EQ(Run(), kEnd);
        return first;
    }
};

TEST_F(EventLoopRunTest, TurnIsHandlersTimersActivitiesUntilTheDescriptorIsClosed) {
    std::string journal;
    EventHandler handler("h");
    PeriodicTimer timer("t", TimerBase::Callback(new CallbackTo<void(unsigned int, void*)>(
                                 [&](unsigned int, void*) { journal += "t"; })));
    CallbackTo<bool(int)> call([&](int argument) { return journal += "a", argument == 0; });
    ActivityHold hold(&call);
    handler.onRead = [&] {
        journal += "h";
        timer.Start(0, UINT32_MAX);
        loop_.AddActivity(&hold);
        close(epollFd_);
    };
    loop_.AddHandler(&handler);
    EXPECT_EQ(Run(), kEnd);
    EXPECT_EQ(journal, "hta");
}

volatile sig_atomic_t signals = 0;
volatile sig_atomic_t fdToClose = -1;

void CountAndClose(int /*signal*/) {
    signals = signals + 1;
    close(fdToClose);
}

TEST_F(EventLoopRunTest, SignalInTheWaitMaskArrivesInTheWaitAloneAndEndsItQuietly) {
    sigset_t usr1, nothing, old;
    sigemptyset(&nothing);
    sigemptyset(&usr1);
    sigaddset(&usr1, SIGUSR1);
    sigprocmask(SIG_BLOCK, &usr1, &old);
    signal(SIGUSR1, CountAndClose);
    loop_.SetWaitSignalMask(nothing);
    for (const bool isBusy : {true, false}) {  // whether the loop finds something to do at once
        signals = 0;
        fdToClose = isBusy ? -1 : epollFd_;
        raise(SIGUSR1);
        EXPECT_EQ(signals, 0);
        if (isBusy) {
            EXPECT_TRUE(loop_.Poll());
        } else {
            EXPECT_EQ(Run(), kEnd);
        }
        EXPECT_EQ(signals, 1);
    }
    raise(SIGUSR1);
    EXPECT_EQ(signals, 1);
    signal(SIGUSR1, SIG_IGN);  // discards the pending one
    sigprocmask(SIG_SETMASK, &old, nullptr);
}

TEST_F(EventLoopRunTest, OnlyABadDescriptorEndsItAndOtherErrorsAreLoggedEachTime) {
    const std::vector<int> errors = {EINTR, EINVAL, EINTR, EINVAL, EBADF};
    const std::string invalid = "EventLoop error Invalid argument (22)\n";
    size_t turn = 0;
    kernelWait = [&](int) { return errors.at(turn++ % errors.size()); };
    EXPECT_EQ(Run(), invalid + invalid + kEnd);
    EXPECT_EQ(Run(), invalid + invalid + kEnd);
    Capture capture(STDERR_FILENO);
    for (const int error : errors) {
        EXPECT_EQ(loop_.Poll(), error != EBADF) << error;
    }
}

TEST_F(EventLoopRunTest, WaitsForTheNextTimerOrASecondAndNotAtAllForActivities) {
    EXPECT_EQ(TimeoutMs(), 1000);
    PeriodicTimer timer("t");
    timer.Start(600000, UINT32_MAX);
    const int timeoutMs = TimeoutMs();
    EXPECT_TRUE(timeoutMs > 1000 && timeoutMs <= 600000) << timeoutMs;
    timer.StartAt({INT_MAX, 0});
    EXPECT_EQ(TimeoutMs(), INT_MAX);
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
