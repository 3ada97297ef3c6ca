#include "core/event/EventLoop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <functional>

#include "core/event/FileDescriptorHandler.h"
#include "core/signals/SignalWindow.h"
#include "core/text/FormatText.h"
#include "core/timer/PeriodicTimer.h"
#include "tests/support/CallbackTo.h"
#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"

using namespace Quenda;

namespace {

// Calls functions that a test chooses. By default it has a new event descriptor, which is ready
// for reading and writing.
struct EventHandler : FileDescriptorHandler {
    explicit EventHandler(const char* name, uint32_t events = EPOLLIN, int fd = eventfd(1, 0))
        : FileDescriptorHandler(name, fd, events) {}
    void HandleRead() override { Run(onRead); }
    void HandleWrite() override { Run(onWrite); }
    // By value: the action may destroy this handler.
    static void Run(std::function<void()> action) { action(); }

    std::function<void()> onRead = [] {};
    std::function<void()> onWrite = [] {};
};

// A loop that is ready to run; knows its epoll descriptor.
struct EventLoopTest : testing::Test {
    void SetUp() override {
        EXPECT_TRUE(loop_.Init());
        for (const auto& [fd, target] : OpenDescriptors()) {
            epollFd_ = before_.count(fd) == 0 ? fd : epollFd_;
        }
    }

    std::map<int, std::string> before_ = OpenDescriptors();
    EventLoop loop_;
    int epollFd_ = -1;
};

TEST(WaitTimeoutTest, RoundsDownButNeverToABusyPoll) {
    EXPECT_EQ(EventLoop::WaitTimeoutMs({0, 0}), 0);
    EXPECT_EQ(EventLoop::WaitTimeoutMs({0, 1}), 1);
    EXPECT_EQ(EventLoop::WaitTimeoutMs({2147483, 648000000}), INT_MAX);
}

TEST_F(EventLoopTest, HandlersMayDestroyThemselvesAndOthersOfTheBatch) {
    std::vector<std::unique_ptr<EventHandler>> handlers;
    int calls = 0;
    const auto destroyAll = [&] {
        ++calls;
        handlers.clear();
    };
    for (const bool inWrite : {false, true}) {
        for (int i = 0; i < 3; ++i) {
            handlers.push_back(std::make_unique<EventHandler>("h", EPOLLIN | EPOLLOUT));
            (inWrite ? handlers.back()->onWrite : handlers.back()->onRead) = destroyAll;
            loop_.AddHandler(handlers.back().get());
        }
        loop_.Poll();
        loop_.Poll();
        EXPECT_EQ(OpenDescriptors().size(), before_.size() + 1);
    }
    EXPECT_EQ(calls, 2);
}

TEST_F(EventLoopTest, AnyAdditionOrRemovalSkipsOneWrite) {
    std::string journal;
    EventHandler handler("a", EPOLLIN | EPOLLOUT), other("b", 0);
    handler.onRead = [&] { journal += "r"; };
    handler.onWrite = [&] { journal += "w"; };
    const auto poll = [&] {
        journal.clear();
        loop_.Poll();
        return journal;
    };
    loop_.AddHandler(&handler);
    EXPECT_EQ(poll(), "r");
    EXPECT_EQ(poll(), "rw");
    loop_.AddHandler(&other);
    EXPECT_EQ(poll(), "r");
    EXPECT_TRUE(loop_.RemoveHandler(&other));
    EXPECT_FALSE(loop_.RemoveHandler(&other));
    EXPECT_EQ(poll(), "r");
    EXPECT_TRUE(handler.SetEvents(EPOLLOUT));
    EXPECT_EQ(poll(), "w");
    EXPECT_FALSE(handler.SetEvents(EPOLLOUT | EPOLLET));  // EPOLLET is refused
}

TEST_F(EventLoopTest, HandlersCloseTheirDescriptorsButNotStandardInput) {
    auto ended = std::make_unique<EventLoop>();
    EXPECT_TRUE(ended->Init());
    {
        EventHandler handler("outlives its loop"), input("input", EPOLLIN, 0);
        ended->AddHandler(&handler);
        ended.reset();
        EXPECT_TRUE(handler.SetNonBlocking());
        EXPECT_NE(fcntl(handler.Fd(), F_GETFL) & O_NONBLOCK, 0);
        EXPECT_TRUE(handler.SetEvents(0));
    }
    EXPECT_EQ(OpenDescriptors().size(), before_.size() + 1);
    EXPECT_NE(fcntl(0, F_GETFD), -1);
}

TEST_F(EventLoopTest, FailuresOfTheKernelAreLoggedAndAbsorbed) {
    EventHandler good("good"), twin("twin", EPOLLIN, good.Fd()), closed("closed");
    Capture capture(STDERR_FILENO);
    EXPECT_TRUE(loop_.AddHandler(&good));
    EXPECT_EQ(fcntl(good.Fd(), F_GETFD), FD_CLOEXEC);
    EXPECT_FALSE(loop_.AddHandler(&twin));
    dup2(closed.Fd(), good.Fd());
    EXPECT_TRUE(loop_.RemoveHandler(&good));  // ENOENT, which is not worth a line
    close(closed.Fd());
    EXPECT_TRUE(loop_.AddHandler(&closed));
    EXPECT_TRUE(closed.SetEvents(EPOLLOUT));
    EXPECT_TRUE(loop_.RemoveHandler(&closed));
    const int e = epollFd_;
    const int c = closed.Fd();
    EXPECT_EQ(capture.Stop(),
              FormatText("In EventLoop::AddHandler, Handler already present, name: twin.\n"
                         "epoll_ctl_add failed on(closed) (%d/%d): Bad file descriptor\n"
                         "epoll_ctl_mod failed on(closed) (%d/%d): Bad file descriptor\n"
                         "epoll_ctl_del failed on(closed) (%d/%d): Bad file descriptor\n",
                         e, c, e, c, e, c));
}

TEST_F(EventLoopTest, OnlyABadDescriptorEndsTheRun) {
    Capture capture(STDERR_FILENO);
    dup2(STDERR_FILENO, epollFd_);
    EXPECT_TRUE(loop_.Poll());
    close(epollFd_);
    EXPECT_FALSE(loop_.Run());
    EXPECT_EQ(capture.Stop(),
              "EventLoop error Invalid argument (22)\nEventLoop error Bad file descriptor (9)\n"
              "EventLoop terminated\n");
}

TEST_F(EventLoopTest, WaitsForTheNextTimerAndNotAtAllForActivities) {
    Capture capture(STDERR_FILENO);
    const auto stop = [this](auto...) { return loop_.Stop(), true; };
    PeriodicTimer timer("t", TimerBase::Callback(new CallbackTo<void(unsigned int, void*)>(stop)));
    for (int i = 0; i < 150; ++i) {  // minutes, if each took a second
        timer.Start(1, 3600000);
        EXPECT_TRUE(loop_.Run());
    }
    ActivityHold hold(ActivityHold::CallbackHandle(new CallbackTo<bool(int)>(stop)));
    loop_.AddActivity(&hold);
    EXPECT_TRUE(loop_.Run());  // an hour, if it waited for the timer
}

TEST_F(EventLoopTest, SignalsHeldArriveInEveryWait) {
    static bool came = false;
    const auto run = [this] {
        (void)signal(SIGUSR1, [](int) { came = true; });
        sigset_t held{};
        sigaddset(&held, SIGUSR1);
        BlockSignalsOutsideWindows(held);
        BlockSignalsOutsideWindows(held);  // by another part of the program
        EventHandler ready("ready");
        for (const bool isReady : {false, true}) {
            came = false;
            raise(SIGUSR1);
            EXPECT_FALSE(came);
            EXPECT_TRUE(loop_.Poll());
            EXPECT_TRUE(came) << isReady;
            loop_.AddHandler(&ready);
        }
        came = false;
        const SignalWindow window;
        EXPECT_TRUE(loop_.Poll());  // its window ends inside of this one
        raise(SIGUSR1);
        EXPECT_TRUE(came);
        _exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

}  // namespace
