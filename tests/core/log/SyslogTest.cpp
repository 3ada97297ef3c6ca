#include "core/log/Syslog.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <fstream>
#include <thread>

#include "core/log/Log.h"
#include "core/log/TraceList.h"
#include "core/options/OptionsNodeEdit.h"
#include "tests/support/Capture.h"

using namespace Quenda;

namespace {

// Gives this process its own /dev; false if that is not permitted. Root may mount it at once. Other
// users first become root in a new user namespace.
bool MakeOwnDev() {
    const std::string uid = std::to_string(geteuid()), gid = std::to_string(getegid());
    if (unshare(CLONE_NEWNS) == -1 && unshare(CLONE_NEWUSER | CLONE_NEWNS) == -1) {
        return false;
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " + uid + " 1";
    std::ofstream("/proc/self/gid_map") << "0 " + gid + " 1";
    return mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", "/dev", "tmpfs", 0, nullptr) == 0;
}

const sockaddr_un kAddress = {AF_UNIX, "/dev/log"};
int logger = -1;

int Bind(int type) {
    (void)unlink(kAddress.sun_path);
    const int fd = socket(AF_UNIX, type, 0);
    return bind(fd, reinterpret_cast<const sockaddr*>(&kAddress), sizeof(kAddress)) == 0 ? fd : -1;
}

// Fills the queue with empty lines; the tests ignore them as lines of other programs.
void FillQueue() {
    for (ssize_t sent = 0; sent != -1;) {
        const int fd = socket(AF_UNIX, SOCK_DGRAM, 0);
        sent = sendto(fd, "", 1, MSG_DONTWAIT, reinterpret_cast<const sockaddr*>(&kAddress),
                      sizeof(kAddress));
        close(fd);
    }
}

std::string Received(int fd) {
    char record[4096];
    const ssize_t size = recv(fd, record, sizeof(record), MSG_DONTWAIT);
    return size < 0 ? std::string() : std::string(record, static_cast<size_t>(size));
}

struct SyslogTest : testing::Test {
    void SetUp() override {
        static const bool permitted = MakeOwnDev();
        if (!permitted) {
            GTEST_SKIP() << "mount namespaces are not permitted here";
        }
        close(logger);  // the one of the previous test
        logger = Bind(SOCK_DGRAM);
        OpenSyslog("keldra");
        const int next = dup(STDERR_FILENO);
        close(next);
        LogMessage(0, "goes through at once\n");
        EXPECT_EQ(dup(STDERR_FILENO), next) << "the line left a descriptor open";
        EXPECT_EQ(Records(), "<29>keldra: goes through at once\n|");
    }
    // The records received, without foreign ones and without their time stamps, a "|" after each.
    static std::string Records() {
        std::string records;
        for (std::string text; !(text = Received(logger)).empty();) {
            if (text.size() > 1) {
                records += text.erase(text.find('>') + 1, 16) + "|";
            }
        }
        return records;
    }
    Capture quiet_{STDERR_FILENO};
};

TEST_F(SyslogTest, GetsLevelZeroAndErrorsOnceEachWhileItIsOpen) {
    CloseSyslog();
    LogError("before %d\n", 1);
    OpenSyslog("another");
    OpenSyslog("keldra");
    LogMessage(0, "notice %s\n", "a");
    LogMessage(2, "detail %s\n", "b");
    LogError("error %s\n", "d");
    SyslogSink().Write("abcdef", 3);
    CloseSyslog();
    EXPECT_FALSE(IsSyslogOpen());
    LogMessage(0, "after\n");
    SyslogSink().Puts("by name");
    syslog(LOG_USER | LOG_ERR, "from elsewhere");
    EXPECT_EQ(quiet_.Stop(),
              "goes through at once\nbefore 1\nnotice a\ndetail b\nerror d\nafter\n");
    EXPECT_EQ(Records(),
              "<29>keldra: notice a\n|<27>keldra: error d\n|<27>keldra: abc|"
              "<27>log_tests: by name|<11>log_tests: from elsewhere|");
}

TEST_F(SyslogTest, LinesAreThoseOfSyslog) {
    const std::string text(1024, 'x');  // does not fit into the usual room with its end
    time_t second = 0;
    std::string ours, theirs;
    do {
        second = time(nullptr);
        LogMessage(0, "%s", text.c_str());
        ours = Received(logger);
        syslog(LOG_DAEMON | LOG_NOTICE, "%s", text.c_str());
        theirs = Received(logger);
    } while (time(nullptr) != second);
    EXPECT_EQ(ours, theirs);
    const int everything = setlogmask(LOG_UPTO(LOG_ERR));
    LogMessage(0, "masked\n");
    (void)setlogmask(everything);
    EXPECT_EQ(Received(logger), "");
}

TEST_F(SyslogTest, HungLoggerIsNotWaitedForWhenItIsGoneOrReplaced) {
    FillQueue();
    unlink(kAddress.sun_path);
    errno = EIO;
    LogMessage(0, "to nobody\n");
    LogMessage(0, "nor this one\n");
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(Records(), "");
    logger = Bind(SOCK_DGRAM);  // the old one stays open, as the first of the next two does
    LogMessage(0, "to its successor\n");
    EXPECT_EQ(Records(),
              "<29>keldra: 2 lines were lost: the system logger did not take them\n|"
              "<29>keldra: to its successor\n|");
    for (int i = 0; i < 2; ++i) {
        const int stream = Bind(SOCK_STREAM | SOCK_NONBLOCK);
        listen(stream, 5);
        LogMessage(0, "to a stream\n");
        const int connection = accept(stream, nullptr, nullptr);
        EXPECT_NE(Received(connection).find(" keldra: to a stream\n"), std::string::npos);
    }
}

TEST_F(SyslogTest, SlowLoggerIsWaitedForOnceInAllUntilALineGoesThroughAtOnce) {
    (void)signal(SIGALRM, [](int) { (void)Received(logger); });
    FillQueue();
    (void)ualarm(300'000, 300'000);
    for (int i = 0; i < 20; ++i) {
        LogMessage(0, "waits\n");
    }
    (void)ualarm(0, 0);
    EXPECT_NE(Records().find("waits"), std::string::npos);
    LogMessage(0, "next\n");
    EXPECT_NE(Records(), "<29>keldra: next\n|");  // some were lost
    FillQueue();
    std::thread reader([] {
        usleep(20'000);
        (void)Received(logger);
    });
    LogMessage(0, "patient\n");
    reader.join();
    EXPECT_EQ(Records(), "<29>keldra: patient\n|");
}

TEST_F(SyslogTest, OptionsPutTheSinkIntoATraceListOrTakeItOut) {
    TraceList list;
    OptionsNodeEdit options;
    const auto traced = [&](const OptionsNode* node) {
        ApplySysloggerOptions(list, node);
        for (const int level : {2, 3, 5, 6}) {
            list.Trace(level, "%d", level);
        }
        return Records();
    };
    EXPECT_EQ(traced(&options), "");
    EXPECT_TRUE(options.SetLeaf("syslogger_on", true, nullptr));
    EXPECT_EQ(traced(&options), "<27>keldra: 2|<27>keldra: 3|<27>keldra: 5|");
    EXPECT_TRUE(options.SetLeaf("syslogger_level", 2, nullptr));
    EXPECT_EQ(traced(&options), "<27>keldra: 2|");
    EXPECT_EQ(traced(nullptr), "<27>keldra: 2|");
    EXPECT_TRUE(options.SetLeaf("syslogger_on", false, nullptr));
    EXPECT_EQ(traced(&options), "");
}

}  // namespace
