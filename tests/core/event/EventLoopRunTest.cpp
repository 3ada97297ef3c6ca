#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>

#include "core/signals/SignalWindow.h"
#include "core/timer/PeriodicTimer.h"
#include "tests/core/event/LoopFixture.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

const std::string kEnd = "EventLoop error Bad file descriptor (9)\nEventLoop terminated\n";

// Stands in for the kernel's wait, when it is set: gets the time-out, returns an errno value.
std::function<int(int timeoutMs)> kernelWait;
// What the last wait was given.
const sigset_t* waitMask = nullptr;

}  // namespace

// Takes the place of the C library's own in this program.
extern "C" int epoll_pwait(int fd, epoll_event* events, int count, int timeoutMs,
                           const sigset_t* mask) {
    waitMask = mask;
    if (kernelWait) {
        errno = kernelWait(timeoutMs);
        return -1;
    }
    return static_cast<int>(
        syscall(SYS_epoll_pwait, fd, events, count, timeoutMs, mask, _NSIG / 8));
}

namespace {

struct EventLoopRunTest : LoopFixture {
    ~EventLoopRunTest() override { kernelWait = nullptr; }
    std::string Run() {
        Capture capture(STDERR_FILENO);
        const bool isStopped = loop_.Run();
        return capture.Stop() + (isStopped ? "stopped" : "");
    }
    // The time-out of the only wait of a run.
    int TimeoutMs() {
        int only = -1;
        kernelWait = [&](int timeoutMs) {
            only = timeoutMs;
            loop_.Stop();
            return EINTR;
        };
        EXPECT_EQ(Run(), "EventLoop terminated\nstopped");
        return only;
    }
};

TEST_F(EventLoopRunTest, OnlyABadDescriptorEndsItAndOtherErrorsAreLoggedEachTime) {
    const std::vector<int> errors = {EINTR, EINVAL, EINTR, EINVAL, EBADF};
    const std::string invalid = "EventLoop error Invalid argument (22)\n";
    size_t turn = 0;
    kernelWait = [&](int) { return errors.at(turn++); };
    EXPECT_EQ(Run(), invalid + invalid + kEnd);
}

TEST_F(EventLoopRunTest, SignalsHeldArriveInEveryWait) {
    static bool came = false;
    const auto run = [this] {
        (void)signal(SIGUSR1, [](int) { came = true; });
        sigset_t held{};
        sigaddset(&held, SIGUSR1);
        BlockSignalsOutsideWindows(held);
        BlockSignalsOutsideWindows(held);  // by another part of the program
        const auto error = [](int) { return EINVAL; };
        EventHandler ready("ready");
        loop_.AddHandler(&ready);
        for (const auto& wait : {std::function<int(int)>(), std::function<int(int)>(error)}) {
            kernelWait = wait;
            came = false;
            raise(SIGUSR1);
            EXPECT_FALSE(came);
            EXPECT_TRUE(loop_.Poll());
            EXPECT_TRUE(came);
            const SignalWindow window;
            EXPECT_TRUE(loop_.Poll());  // its window ends inside of this one
            came = false;
            raise(SIGUSR1);
            EXPECT_TRUE(came);
        }
        loop_.RemoveHandler(&ready);
        kernelWait = nullptr;
        came = false;
        raise(SIGUSR1);
        EXPECT_TRUE(loop_.Poll());  // finds nothing
        EXPECT_TRUE(came);
        EXPECT_EQ(sigismember(waitMask, SIGUSR1), 0);
        _exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST_F(EventLoopRunTest, WaitsForTheNextTimerOrASecondAndNotAtAllForActivities) {
    EXPECT_EQ(TimeoutMs(), 1000);
    EXPECT_EQ(waitMask, nullptr);
    PeriodicTimer timer("t");
    timer.StartAt({INT_MAX, 0});
    EXPECT_EQ(TimeoutMs(), INT_MAX);
    ActivityHold hold(nullptr);
    loop_.AddActivity(&hold);
    EXPECT_EQ(TimeoutMs(), 0);
}

}  // namespace
