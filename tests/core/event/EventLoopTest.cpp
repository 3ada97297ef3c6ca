#include "core/event/EventLoop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/event/WaitTimeout.h"
#include "core/output/FormatText.h"
#include "core/output/StringWritable.h"
#include "core/timer/TimeKeeper.h"
#include "tests/core/event/EventHandler.h"
#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TempDir.h"

using namespace Quenda;

namespace {

class EventLoopTest : public testing::Test {
protected:
    EventLoopTest() {
        before_ = OpenDescriptors();
        EXPECT_TRUE(loop_.Init());
        for (const auto& [fd, target] : OpenDescriptors()) {
            epollFd_ = before_.count(fd) == 0 ? fd : epollFd_;
        }
    }
    std::string HandlersText() const {
        StringWritable out;
        loop_.DumpHandlers(&out);
        return out.Text();
    }

    std::map<int, std::string> before_;
    EventLoop loop_;
    int epollFd_ = -1;
};

TEST(WaitTimeoutTest, RoundsDownButNeverToABusyPoll) {
    const struct {
        TimeValue wait;
        int expectedMs;
    } cases[] = {
        {{0, 0}, 0},
        {{0, 1}, 1},
        {{0, 400000}, 1},
        {{0, 999999}, 1},
        {{0, 1999999}, 1},
        {{1, 0}, 1000},
        {{2, 500}, 2000},
        {{2147483, 647000000}, INT_MAX},
        {{2147483, 648000000}, INT_MAX},
        {{INT_MAX, 999999999}, INT_MAX},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WaitTimeoutMs(c.wait), c.expectedMs)
            << c.wait.Seconds() << " s " << c.wait.Nanoseconds() << " ns";
    }
}

TEST_F(EventLoopTest, WriteHalfIsSkippedOnceAfterAChange) {
    EventHandler handler("h\n", EPOLLIN | EPOLLOUT);
    const auto text = [&handler](const char* counts, const char* flags) {
        return FormatText("%p fd:%d \"h\n\" Use Count: %s %s\n", static_cast<void*>(&handler),
                          handler.Fd(), counts, flags);
    };
    EXPECT_TRUE(loop_.AddHandler(&handler));
    EXPECT_TRUE(loop_.Poll());
    EXPECT_EQ(HandlersText(), text("1/0", "READ WRITE EXCEP "));
    EXPECT_TRUE(loop_.Poll());
    EXPECT_EQ(HandlersText(), text("2/1", "READ WRITE EXCEP "));
    EXPECT_TRUE(loop_.RemoveHandler(&handler));
    EXPECT_TRUE(loop_.Poll());
    EXPECT_TRUE(loop_.AddHandler(&handler));
    EXPECT_EQ(HandlersText(), text("0/0", "READ WRITE EXCEP "));
    EXPECT_TRUE(handler.SetEvents(EPOLLET | EPOLLPRI));
    EXPECT_EQ(HandlersText(), text("0/0", "  EXCEP "));
    EXPECT_FALSE(handler.SetEvents(0));
    EXPECT_TRUE(handler.SetEvents(EPOLLOUT));
    loop_.Poll();
    loop_.Poll();
    EXPECT_EQ(HandlersText(), text("0/1", " WRITE EXCEP "));
}

TEST_F(EventLoopTest, HandlersMayDestroyThemselvesAndOthersOfTheBatch) {
    std::vector<std::unique_ptr<EventHandler>> handlers;
    int calls = 0;
    for (int i = 0; i < 3; ++i) {
        handlers.push_back(std::make_unique<EventHandler>("h", EPOLLIN | EPOLLOUT));
        handlers.back()->onRead = [&] { ++calls, handlers.clear(); };
        handlers.back()->onWrite = [&] { calls += 100; };
        loop_.AddHandler(handlers.back().get());
    }
    loop_.Poll();
    loop_.Poll();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(HandlersText(), "");
    EXPECT_EQ(OpenDescriptors().size(), before_.size() + 1);
}

TEST_F(EventLoopTest, HandlerRemovedWhileItReadsStaysOpenAndIsNotWritten) {
    EventHandler handler("h", EPOLLIN | EPOLLOUT);
    int reads = 0;
    handler.onRead = [&] { ++reads, loop_.RemoveHandler(&handler); };
    handler.onWrite = [] { FAIL() << "written after its removal"; };
    loop_.AddHandler(&handler);
    handler.SetEvents(EPOLLOUT);
    handler.onWrite = [&] { handler.SetEvents(EPOLLIN | EPOLLOUT); };
    loop_.Poll();
    loop_.Poll();  // the change has been noted by now: only the removal can stop the write
    handler.onWrite = [] { FAIL() << "written after its removal"; };
    loop_.Poll();
    loop_.Poll();
    EXPECT_EQ(reads, 1);
    EXPECT_NE(fcntl(handler.Fd(), F_GETFD), -1);
}

TEST_F(EventLoopTest, HandlerMayAddAnotherWhichIsReadNext) {
    EventHandler first("first", EPOLLIN | EPOLLOUT);
    EventHandler second("second");
    std::string journal;
    first.onWrite = [&] { journal += "w"; };
    loop_.AddHandler(&first);
    loop_.Poll();
    first.onRead = [&] { loop_.AddHandler(&second); };
    second.onRead = [&] { journal += "s"; };
    loop_.Poll();
    EXPECT_EQ(journal, "");
    first.onRead = [] {};
    first.SetEvents(EPOLLOUT);
    loop_.Poll();
    std::sort(journal.begin(), journal.end());  // epoll chooses the order
    EXPECT_EQ(journal, "sw");
}

TEST_F(EventLoopTest, TakesAtMost128EventsAtATime) {
    std::vector<std::unique_ptr<EventHandler>> handlers;
    int reads = 0;
    for (int i = 0; i < 200; ++i) {
        handlers.push_back(std::make_unique<EventHandler>("h"));
        EventHandler* const handler = handlers.back().get();
        handler->onRead = [&reads, handler] {
            eventfd_t value = 0;
            reads += eventfd_read(handler->Fd(), &value) == 0 ? 1 : 1000;
        };
        loop_.AddHandler(handler);
    }
    loop_.Poll();
    EXPECT_EQ(reads, 128);
    loop_.Poll();
    EXPECT_EQ(reads, 200);
}

TEST_F(EventLoopTest, HangUpIsReadEvenWhenNothingIsWaitedFor) {
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    EventHandler handler("h", 0, fds[0]);
    int reads = 0;
    handler.onRead = [&] { ++reads; };
    loop_.AddHandler(&handler);
    loop_.Poll();
    EXPECT_EQ(reads, 0);
    close(fds[1]);
    loop_.Poll();
    EXPECT_EQ(reads, 1);
}

TEST_F(EventLoopTest, RegistrationFailuresAreLogged) {
    TempDir dir;
    EventHandler good("good"), twin("twin", EPOLLIN, good.Fd()), none("none", EPOLLIN, -1);
    EventHandler closed("closed"), reused("reused");
    EventHandler file("file", EPOLLIN, open(dir.Write("f", "").c_str(), O_RDONLY));
    Capture capture(STDERR_FILENO);
    EXPECT_FALSE(loop_.AddHandler(&none));
    EXPECT_FALSE(loop_.RemoveHandler(&twin));
    EXPECT_TRUE(loop_.AddHandler(&good));
    EXPECT_NE(fcntl(good.Fd(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_FALSE(loop_.AddHandler(&twin));
    EXPECT_TRUE(loop_.AddHandler(&file));
    EXPECT_TRUE(loop_.AddHandler(&reused));
    dup2(closed.Fd(), reused.Fd());
    EXPECT_TRUE(loop_.RemoveHandler(&reused));  // ENOENT, which is not worth a line
    close(closed.Fd());
    EXPECT_TRUE(loop_.AddHandler(&closed));
    EXPECT_TRUE(closed.SetEvents(EPOLLOUT));
    EXPECT_TRUE(loop_.RemoveHandler(&closed));
    EXPECT_FALSE(closed.SetNonBlocking());
    EXPECT_TRUE(loop_.RemoveHandler(&file));
    EXPECT_TRUE(loop_.RemoveHandler(&twin));  // by its descriptor: this is the good one
    const int e = epollFd_;
    EXPECT_EQ(
        capture.Stop(),
        FormatText("In EventLoop::AddHandler, File Descriptor is bad(-1), name: none.\n"
                   "In EventLoop::AddHandler, Handler already present, name: twin.\n"
                   "epoll_ctl_add failed on(file) (%d/%d): Operation not permitted\n"
                   "epoll_ctl_add failed on(closed) (%d/%d): Bad file descriptor\n"
                   "epoll_ctl_mod failed on(closed) (%d/%d): Bad file descriptor\n"
                   "epoll_ctl_del failed on(closed) (%d/%d): Bad file descriptor\n"
                   "closed fcntl() get flags failed: Bad file descriptor\n"
                   "epoll_ctl_del failed on(file) (%d/%d): Operation not permitted\n",
                   e, file.Fd(), e, closed.Fd(), e, closed.Fd(), e, closed.Fd(), e, file.Fd()));
}

TEST_F(EventLoopTest, NonBlockingKeepsTheOtherFlagsAndLogsARefusal) {
    TempDir dir;
    EventHandler append("a", 0, open(dir.Write("f", "").c_str(), O_WRONLY | O_APPEND));
    EXPECT_TRUE(append.SetNonBlocking());
    EXPECT_EQ(fcntl(append.Fd(), F_GETFL) & (O_APPEND | O_NONBLOCK), O_APPEND | O_NONBLOCK);
    EventHandler path("p", 0, open(dir.File("f").c_str(), O_PATH));
    Capture capture(STDERR_FILENO);
    EXPECT_FALSE(path.SetNonBlocking());
    EXPECT_EQ(capture.Stop(), "p set O_NONBLOCK failed: Bad file descriptor\n");
}

TEST_F(EventLoopTest, InitReportsThatThereIsNoDescriptorLeft) {
    EXPECT_TRUE(loop_.Init());
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    EventLoop loop;
    Capture capture(STDERR_FILENO);
    const rlimit none = {0, limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_FALSE(loop.Init());
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(capture.Stop(), "epoll_create() failed: Too many open files (24)\n");
    EXPECT_TRUE(loop.Init());
}

TEST_F(EventLoopTest, DescriptorZeroIsNeitherRemovedNorClosed) {
    const int saved = fcntl(0, F_DUPFD_CLOEXEC, 3);
    const int ready = eventfd(1, 0);
    dup2(ready, 0);
    close(ready);
    int reads = 0;
    {
        EventHandler console("console", EPOLLIN, 0);
        console.onRead = [&] { ++reads; };
        EXPECT_TRUE(loop_.AddHandler(&console));
        loop_.Poll();
    }
    EXPECT_EQ(reads, 1);
    EXPECT_NE(fcntl(0, F_GETFD), -1);
    EventHandler next("next", EPOLLIN, 0);
    Capture capture(STDERR_FILENO);
    EXPECT_FALSE(loop_.AddHandler(&next));
    EXPECT_EQ(capture.Stop(), "In EventLoop::AddHandler, Handler already present, name: next.\n");
    dup2(saved, 0);
    close(saved);
}

TEST_F(EventLoopTest, HandlersOutliveTheirLoop) {
    auto loop = std::make_unique<EventLoop>();
    loop->Init();
    auto handler = std::make_unique<EventHandler>("h");
    loop->AddHandler(handler.get());
    loop.reset();
    EXPECT_TRUE(handler->SetEvents(EPOLLOUT));
    handler.reset();
    EXPECT_EQ(OpenDescriptors().size(), before_.size() + 1);
}

TEST_F(EventLoopTest, ConsoleCommandDumpsWhatItIsAskedFor) {
    EventHandler high("high"), low("low");
    ActivityHold hold(nullptr, "hold");
    TimeKeeper::Instance().ResetExpiredCount();
    loop_.AddHandler(&low);
    loop_.AddHandler(&high);
    loop_.AddActivity(&hold);
    const std::string fds = HandlersText();
    EXPECT_LT(fds.find("high"), fds.find("low"));
    const std::string timers = "0 Timers Expired\n0 Active Timer(s)\n";
    const std::string activities = FormatText(
        "Current Activities: 0\nNew Activities: 1\n%p - hold\n", static_cast<void*>(&hold));
    const std::string usage = "Usage: [fd] | [timer] | [act] | [sleep MS]\n";
    const struct {
        std::vector<const char*> arguments;
        std::string expected;
    } cases[] = {
        {{}, fds + "\n" + timers + "\n" + activities},
        {{"fd", "more"}, fds},
        {{"timer"}, timers},
        {{"act"}, activities},
        {{"sleep", "1x"}, "Sleeping for 1 milliseconds.\n"},
        {{"sleep", "-99999999999"}, "Sleeping for -2147483648 milliseconds.\n"},
        {{"sleep"}, usage},
        {{"sleep", "1", "2"}, usage},
        {{"FD"}, usage},
        {{""}, usage},
    };
    for (auto c : cases) {
        StringWritable out;
        loop_.DebugCommand(&out, static_cast<int>(c.arguments.size()), c.arguments.data());
        EXPECT_EQ(out.Text(), c.expected);
    }
    loop_.DebugCommand(nullptr, 0, nullptr);
    EXPECT_TRUE(loop_.RemoveActivity(&hold));
}

}  // namespace
