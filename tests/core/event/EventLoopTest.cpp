#include "core/event/EventLoop.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <climits>

#include "core/event/WaitTimeout.h"
#include "core/output/FormatText.h"
#include "core/output/StringWritable.h"
#include "core/timer/TimeKeeper.h"
#include "tests/core/event/LoopFixture.h"

using namespace Quenda;

namespace {

class EventLoopTest : public LoopFixture {
protected:
    std::string HandlersText() const {
        StringWritable out;
        loop_.DumpHandlers(&out);
        return out.Text();
    }
};

TEST(WaitTimeoutTest, RoundsDownButNeverToABusyPoll) {
    const std::pair<TimeValue, int> cases[] = {{{0, 0}, 0},
                                               {{0, 1}, 1},
                                               {{0, 400000}, 1},
                                               {{0, 1999999}, 1},
                                               {{2, 500}, 2000},
                                               {{2147483, 647000000}, INT_MAX},
                                               {{2147483, 648000000}, INT_MAX},
                                               {{INT_MAX, 999999999}, INT_MAX}};
    for (const auto& [wait, expectedMs] : cases) {
        EXPECT_EQ(WaitTimeoutMs(wait), expectedMs)
            << wait.Seconds() << " s " << wait.Nanoseconds() << " ns";
    }
}

TEST_F(EventLoopTest, WriteHalfIsSkippedOnceAfterAChangeAndPrintCounts) {
    EventHandler handler("h", EPOLLIN | EPOLLOUT);
    const auto text = [&handler](const char* counts) {
        return FormatText("%p fd:%d \"h\" Use Count: %s \n", static_cast<void*>(&handler),
                          handler.Fd(), counts);
    };
    EXPECT_TRUE(loop_.AddHandler(&handler));
    EXPECT_TRUE(loop_.Poll());
    EXPECT_EQ(HandlersText(), text("1/0 READ WRITE EXCEP"));
    EXPECT_TRUE(loop_.Poll());
    EXPECT_EQ(HandlersText(), text("2/1 READ WRITE EXCEP"));
    EXPECT_TRUE(loop_.RemoveHandler(&handler));
    EXPECT_TRUE(loop_.Poll());
    EXPECT_TRUE(loop_.AddHandler(&handler));
    EXPECT_TRUE(handler.SetEvents(EPOLLET | EPOLLPRI));
    EXPECT_EQ(HandlersText(), text("0/0   EXCEP"));
    EXPECT_FALSE(handler.SetEvents(0));
    EXPECT_TRUE(handler.SetEvents(EPOLLOUT));
    loop_.Poll();
    loop_.Poll();
    EXPECT_EQ(HandlersText(), text("0/1  WRITE EXCEP"));
}

TEST_F(EventLoopTest, HandlersMayDestroyThemselvesAndOthersOfTheBatch) {
    std::vector<std::unique_ptr<EventHandler>> handlers;
    int calls = 0;
    const auto destroyAll = [&] { ++calls, handlers.clear(); };
    for (const bool inWrite : {false, true}) {
        for (int i = 0; i < 3; ++i) {
            handlers.push_back(std::make_unique<EventHandler>("h", EPOLLIN | EPOLLOUT));
            (inWrite ? handlers.back()->onWrite : handlers.back()->onRead) = destroyAll;
            loop_.AddHandler(handlers.back().get());
        }
        loop_.Poll();
        loop_.Poll();
        EXPECT_EQ(HandlersText(), "");
        EXPECT_EQ(OpenDescriptors().size(), before_.size() + 1);
    }
    EXPECT_EQ(calls, 2);
}

TEST_F(EventLoopTest, HandlerThatRemovesItselfOrAddsAnotherIsNotWrittenInThatTurn) {
    EventHandler first("first", EPOLLIN | EPOLLOUT), second("second");
    std::string journal;
    first.onWrite = [&] { journal += "w"; };
    second.onRead = [&] { journal += "s"; };
    loop_.AddHandler(&first);
    loop_.Poll();  // notes the addition
    first.onRead = [&] { loop_.AddHandler(&second); };
    loop_.Poll();
    EXPECT_EQ(journal, "");
    first.onRead = [&] { loop_.RemoveHandler(&first); };
    loop_.Poll();
    loop_.Poll();
    EXPECT_EQ(journal, "ss");
    EXPECT_NE(fcntl(first.Fd(), F_GETFD), -1);
}

TEST_F(EventLoopTest, TakesAtMost128EventsAtATime) {
    std::vector<std::unique_ptr<EventHandler>> handlers;
    int reads = 0;
    for (int i = 0; i < 200; ++i) {
        handlers.push_back(std::make_unique<EventHandler>("h"));
        handlers.back()->onRead = [&reads, fd = handlers.back()->Fd()] {
            eventfd_t value = 0;
            reads += eventfd_read(fd, &value) == 0 ? 1 : 1000;
        };
        loop_.AddHandler(handlers.back().get());
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

TEST_F(EventLoopTest, FailuresOfTheKernelAreLoggedAndAbsorbed) {
    EventHandler good("good"), twin("twin", EPOLLIN, good.Fd()), none("none", EPOLLIN, -1);
    EventHandler closed("closed"), reused("reused"), path("path", 0, open("/", O_PATH));
    EventLoop unborn;
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit noFiles = {0, limit.rlim_max};
    Capture capture(STDERR_FILENO);
    EXPECT_FALSE(loop_.AddHandler(&none));
    EXPECT_FALSE(loop_.RemoveHandler(&twin));
    EXPECT_TRUE(loop_.AddHandler(&good));
    EXPECT_EQ(fcntl(good.Fd(), F_GETFD), FD_CLOEXEC);
    EXPECT_FALSE(loop_.AddHandler(&twin));
    EXPECT_TRUE(good.SetNonBlocking());
    EXPECT_EQ(fcntl(good.Fd(), F_GETFL), O_RDWR | O_NONBLOCK);
    EXPECT_TRUE(loop_.AddHandler(&reused));
    dup2(closed.Fd(), reused.Fd());
    EXPECT_TRUE(loop_.RemoveHandler(&reused));  // ENOENT, which is not worth a line
    close(closed.Fd());
    EXPECT_TRUE(loop_.AddHandler(&closed));
    EXPECT_TRUE(closed.SetEvents(EPOLLOUT));
    EXPECT_TRUE(loop_.RemoveHandler(&closed));
    EXPECT_FALSE(closed.SetNonBlocking());
    EXPECT_FALSE(path.SetNonBlocking());
    EXPECT_TRUE(loop_.RemoveHandler(&twin));  // goes by the descriptor: this is the good one
    setrlimit(RLIMIT_NOFILE, &noFiles);
    EXPECT_FALSE(unborn.Init());
    setrlimit(RLIMIT_NOFILE, &limit);
    const int e = epollFd_, c = closed.Fd();
    EXPECT_EQ(capture.Stop(),
              FormatText("In EventLoop::AddHandler, File Descriptor is bad(-1), name: none.\n"
                         "In EventLoop::AddHandler, Handler already present, name: twin.\n"
                         "epoll_ctl_add failed on(closed) (%d/%d): Bad file descriptor\n"
                         "epoll_ctl_mod failed on(closed) (%d/%d): Bad file descriptor\n"
                         "epoll_ctl_del failed on(closed) (%d/%d): Bad file descriptor\n"
                         "closed fcntl() get flags failed: Bad file descriptor\n"
                         "path set O_NONBLOCK failed: Bad file descriptor\n"
                         "epoll_create() failed: Too many open files (24)\n",
                         e, c, e, c, e, c));
}

TEST_F(EventLoopTest, DescriptorZeroIsNeitherRemovedNorClosed) {
    const int saved = fcntl(0, F_DUPFD_CLOEXEC, 3);
    EventHandler ready("ready");
    dup2(ready.Fd(), 0);
    EventHandler next("next", EPOLLIN, 0);
    {
        EventHandler console("console", EPOLLIN, 0);
        EXPECT_TRUE(loop_.AddHandler(&console));
    }
    EXPECT_NE(fcntl(0, F_GETFD), -1);
    Capture capture(STDERR_FILENO);
    EXPECT_FALSE(loop_.AddHandler(&next)) << "the entry has gone";
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
    loop_.AddHandler(&low);
    loop_.AddHandler(&high);
    loop_.AddActivity(&hold);
    TimeKeeper::Instance().ResetExpiredCount();
    const std::string fds = HandlersText();
    EXPECT_LT(fds.find("high"), fds.find("low"));
    const std::string timers = "0 Timers Expired\n0 Active Timer(s)\n";
    const std::string activities = FormatText(
        "Current Activities: 0\nNew Activities: 1\n%p - hold\n", static_cast<void*>(&hold));
    const std::string usage = "Usage: [fd] | [timer] | [act] | [sleep MS]\n";
    std::pair<std::vector<const char*>, std::string> cases[] = {
        {{}, fds + "\n" + timers + "\n" + activities},
        {{"fd", "more"}, fds},
        {{"timer"}, timers},
        {{"act"}, activities},
        {{"sleep", "1x"}, "Sleeping for 1 milliseconds.\n"},
        {{"sleep", "-99999999999"}, "Sleeping for -2147483648 milliseconds.\n"},
        {{"sleep"}, usage},
        {{"sleep", "1", "2"}, usage},
        {{"FD"}, usage}};
    for (auto& [arguments, expected] : cases) {
        StringWritable out;
        loop_.DebugCommand(&out, static_cast<int>(arguments.size()), arguments.data());
        EXPECT_EQ(out.Text(), expected);
    }
    loop_.DebugCommand(nullptr, 0, nullptr);
}

}  // namespace
