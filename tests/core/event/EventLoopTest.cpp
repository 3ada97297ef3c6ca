#include "core/event/EventLoop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <functional>
#include <random>

#include "core/event/FileDescriptorHandler.h"
#include "core/output/StringWritable.h"
#include "core/signals/SignalWindow.h"
#include "core/text/FormatText.h"
#include "core/timer/PeriodicTimer.h"
#include "tests/support/CallbackTo.h"
#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"

using namespace Quenda;

namespace {

// Calls a function of the test. By default it has a new event descriptor, which is ready for
// reading and writing.
struct Handler : FileDescriptorHandler {
    using FileDescriptorHandler::FileDescriptorHandler;
    explicit Handler(const char* name, int fd = eventfd(1, 0))
        : FileDescriptorHandler(name, fd, EPOLLIN | EPOLLOUT) {}
    void HandleRead() override { call(Fd()); }
    void HandleWrite() override { call(toupper(Fd())); }

    inline static std::function<void(int)> call;
};

// A loop that is ready to run; knows its epoll descriptor.
struct EventLoopTest : testing::Test {
    EventLoopTest() {
        close(epollFd_);  // the loop gets it, as the lowest
        EXPECT_TRUE(loop_.Init());
        Handler::call = [](int) {};
    }

    const int epollFd_ = dup(STDIN_FILENO);
    EventLoop loop_;
};

TEST(WaitTimeoutTest, RoundsDownButNeverToABusyPoll) {
    EXPECT_EQ(EventLoop::WaitTimeoutMs({0, 0}), 0);
    EXPECT_EQ(EventLoop::WaitTimeoutMs({0, 1}), 1);
    EXPECT_EQ(EventLoop::WaitTimeoutMs({2147483, 648000000}), INT_MAX);
}

// Handlers add and destroy one another at random, and a list of letters does the same. A letter is
// a handler and its descriptor; a capital letter is its write. All are ready, and epoll reports
// them in the order in which they were added.
TEST_F(EventLoopTest, HandlersAreCalledAsAListSays) {
    std::mt19937 random{1}, sameRandom{1};
    const int ready = eventfd(1, 0);
    std::map<char, std::unique_ptr<Handler>> handlers;
    std::string list, calls, expected;
    bool changed = false;
    const auto operate = [&] {
        const char name = "abcd----"[random() % 8];
        if (name != '-' && handlers.erase(name) == 0) {
            handlers[name] = std::make_unique<Handler>("h", dup2(ready, name));
            EXPECT_TRUE(loop_.AddHandler(handlers[name].get()));
        }
    };
    const auto operateOnList = [&] {
        const char name = "abcd----"[sameRandom() % 8];
        const size_t place = list.find(name);
        changed = changed || name != '-';
        if (place != std::string::npos) {
            list.erase(place, 1);
        } else if (name != '-') {
            list += name;
        }
    };
    Handler::call = [&](int call) {
        calls += static_cast<char>(call);
        operate();
    };
    for (int round = 0; round < 5000 && !HasFailure(); ++round) {
        calls = expected = "";
        operate();
        EXPECT_TRUE(loop_.Poll());
        operateOnList();
        for (const char name : std::string(list)) {
            if (list.find(name) == std::string::npos) {
                continue;
            }
            expected += name;
            operateOnList();
            if (!std::exchange(changed, false)) {
                expected += static_cast<char>(toupper(name));
                operateOnList();
            }
        }
        EXPECT_EQ(calls, expected) << "round " << round;
    }
}

TEST_F(EventLoopTest, HandlersCountTheirCallsAndWaitForTheirEvents) {
    Handler handler("h");
    EXPECT_TRUE(loop_.AddHandler(&handler));
    EXPECT_TRUE(loop_.Poll());
    EXPECT_TRUE(loop_.Poll());
    EXPECT_TRUE(loop_.RemoveHandler(&handler));
    EXPECT_FALSE(loop_.RemoveHandler(&handler));
    EXPECT_TRUE(handler.SetEvents(EPOLLOUT));
    EXPECT_FALSE(handler.SetEvents(EPOLLOUT | EPOLLET));  // EPOLLET is refused
    EXPECT_TRUE(loop_.AddHandler(&handler));
    EXPECT_TRUE(loop_.Poll());
    EXPECT_TRUE(loop_.Poll());
    StringWritable out;
    loop_.DumpHandlers(&out);
    EXPECT_EQ(out.Text(), FormatText("%p fd:%d \"h\" Use Count: 0/1  WRITE EXCEP \n",
                                     static_cast<void*>(&handler), handler.Fd()));
}

TEST_F(EventLoopTest, HandlersCloseTheirDescriptorsButNotStandardInput) {
    const auto before = OpenDescriptors();
    auto ended = std::make_unique<EventLoop>();
    EXPECT_TRUE(ended->Init() && ended->Init());
    {
        Handler handler("outlives its loop"), input("input", STDIN_FILENO);
        EXPECT_TRUE(ended->AddHandler(&handler));
        ended.reset();
        EXPECT_TRUE(handler.SetNonBlocking());
        EXPECT_NE(fcntl(handler.Fd(), F_GETFL) & O_NONBLOCK, 0);
        EXPECT_TRUE(handler.SetEvents(0));
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(EventLoopTest, FailuresOfDescriptorsAreLoggedAndAbsorbed) {
    Handler good("good"), twin("twin", good.Fd()), bad("bad"), none(SharedText("none"));
    Capture capture(STDERR_FILENO);
    EXPECT_TRUE(loop_.AddHandler(&good));
    EXPECT_EQ(fcntl(good.Fd(), F_GETFD), FD_CLOEXEC);
    EXPECT_FALSE(loop_.AddHandler(&twin));
    EXPECT_FALSE(loop_.AddHandler(&none));
    EXPECT_FALSE(none.SetNonBlocking());
    dup2(bad.Fd(), good.Fd());
    EXPECT_TRUE(loop_.RemoveHandler(&good));  // ENOENT, which is not worth a line
    EXPECT_TRUE(good.SetEvents(0));           // concerns no loop any more
    close(bad.Fd());
    EXPECT_TRUE(loop_.AddHandler(&bad));
    EXPECT_TRUE(bad.SetEvents(0));
    EXPECT_FALSE(loop_.ModifyHandler(&bad));
    EXPECT_TRUE(loop_.RemoveHandler(&bad));
    const int e = epollFd_;
    const int b = bad.Fd();
    EXPECT_EQ(capture.Stop(),
              FormatText("In EventLoop::AddHandler, Handler already present, name: twin.\n"
                         "In EventLoop::AddHandler, File Descriptor is bad(-1), name: none.\n"
                         "none fcntl() get flags failed: Bad file descriptor\n"
                         "epoll_ctl_add failed on(bad) (%d/%d): Bad file descriptor\n"
                         "epoll_ctl_mod failed on(bad) (%d/%d): Bad file descriptor\n"
                         "epoll_ctl_mod failed on(bad) (%d/%d): Bad file descriptor\n"
                         "epoll_ctl_del failed on(bad) (%d/%d): Bad file descriptor\n",
                         e, b, e, b, e, b, e, b));
}

TEST_F(EventLoopTest, OnlyABadDescriptorEndsTheRun) {
    EXPECT_EQ(fcntl(epollFd_, F_GETFD), FD_CLOEXEC);
    Capture capture(STDERR_FILENO);
    dup2(STDERR_FILENO, epollFd_);
    EXPECT_TRUE(loop_.Poll());
    close(epollFd_);
    EXPECT_FALSE(loop_.Poll());
    EXPECT_FALSE(loop_.Run());
    EXPECT_EQ(capture.Stop(),
              "EventLoop error Invalid argument (22)\nEventLoop error Bad file descriptor (9)\n"
              "EventLoop error Bad file descriptor (9)\nEventLoop terminated\n");
}

TEST_F(EventLoopTest, WaitsForTheNextTimerAndNotAtAllForActivities) {
    Capture capture(STDERR_FILENO);
    int calls = 0;
    const auto stop = [&](auto...) { return loop_.Stop(), ++calls > 0; };
    PeriodicTimer timer("t", TimerBase::Callback(new CallbackTo<void(unsigned int, void*)>(stop)));
    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    for (int i = 0; i < 150; ++i) {  // minutes, if each took a second
        timer.Start(1, 3600000);
        EXPECT_TRUE(loop_.Run());
    }
    getrusage(RUSAGE_SELF, &after);
    EXPECT_GE(after.ru_nvcsw - before.ru_nvcsw, 15);  // gave up the processor to wait
    ActivityHold hold(ActivityHold::CallbackHandle(new CallbackTo<bool(int)>(stop)));
    EXPECT_FALSE(loop_.AddActivity(nullptr));
    EXPECT_TRUE(loop_.AddActivity(&hold));
    EXPECT_TRUE(loop_.Run());  // an hour, if it waited for the timer
    EXPECT_EQ(calls, 151);
}

TEST_F(EventLoopTest, SignalsHeldArriveInEveryWaitAndNotInCallbacks) {
    static bool came = false;
    const auto run = [this] {
        (void)signal(SIGHUP, [](int) { came = true; });
        sigset_t held{};
        sigaddset(&held, SIGHUP);
        BlockSignalsOutsideWindows(held);
        BlockSignalsOutsideWindows(held);  // by another part of the program
        const auto raiseAnother = [] {
            came = false;
            raise(SIGHUP);
            EXPECT_FALSE(came);
        };
        raiseAnother();
        EXPECT_TRUE(loop_.Poll());
        EXPECT_TRUE(came);
        raiseAnother();
        Handler ready("ready");
        Handler::call = [&](int) {
            EXPECT_TRUE(came);
            raiseAnother();
            loop_.Stop();
        };
        loop_.AddHandler(&ready);
        EXPECT_TRUE(loop_.Run());
        dup2(STDERR_FILENO, epollFd_);
        EXPECT_TRUE(loop_.Poll());
        EXPECT_TRUE(came);
        came = false;
        const SignalWindow window;
        EXPECT_TRUE(loop_.Poll());  // its window ends inside of this one
        raise(SIGHUP);
        EXPECT_TRUE(came);
        if (!HasFailure()) {
            RestoreSignalsInChild();
            raise(SIGHUP);  // which ends a process by default
        }
        _exit(1);
    };
    EXPECT_EXIT(run(), testing::KilledBySignal(SIGHUP), "");
}

}  // namespace
