#include "core/log/Syslog.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <utility>

#include "core/log/Log.h"
#include "tests/support/Capture.h"
#include "tests/support/TempDir.h"

using namespace Quenda;

namespace {

// Root may have mounts of its own; others become root in a user namespace of theirs.
bool EnterOwnMounts() {
    const std::string uid = std::to_string(geteuid()), gid = std::to_string(getegid());
    if (unshare(CLONE_NEWNS) == 0) {
        return true;
    }
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) == -1) {
        return false;
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << "0 " + uid + " 1";
    std::ofstream("/proc/self/gid_map") << "0 " + gid + " 1";
    return true;
}

// A /dev of this process's own; false when that is not permitted.
bool MakeOwnDev() {
    return EnterOwnMounts() && mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", "/dev", "tmpfs", 0, nullptr) == 0;
}

int BindSyslogSocket() {
    (void)unlink("/dev/log");
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0);
    const sockaddr_un address = {AF_UNIX, "/dev/log"};
    return bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == -1 ? -1 : fd;
}

struct SyslogTest : testing::Test {
    void SetUp() override {
        static const bool permitted = MakeOwnDev();
        if (!permitted) {
            GTEST_SKIP() << "mount namespaces are not permitted here";
        }
        fd_ = BindSyslogSocket();
        ASSERT_NE(fd_, -1);
    }
    void TearDown() override { close(fd_); }
    // The records received, without their time stamps, a "|" after each.
    std::string Records() const {
        std::string records;
        char record[1024];
        for (ssize_t n = 0; (n = recv(fd_, record, sizeof(record), 0)) >= 0;) {
            const std::string text(record, static_cast<size_t>(n));
            records += text.substr(0, text.find('>') + 1) + text.substr(text.find('>') + 17) + "|";
        }
        return records;
    }
    int fd_ = -1;
};

TEST_F(SyslogTest, GetsLevelZeroAndErrorsOnceEachWhileItIsOpen) {
    Capture capture(STDERR_FILENO);
    LogError("before %d\n", 1);
    OpenSyslog("first");
    OpenSyslog("keldra");
    LogMessage(0, "notice %s\n", "a");
    LogMessage(2, "detail %s\n", "b");
    LogError("error %s\n", "d");
    SyslogSink().Write("abcdef", 3);
    CloseSyslog();
    CloseSyslog();
    LogMessage(0, "after\n");
    EXPECT_EQ(capture.Stop(), "before 1\nnotice a\ndetail b\nerror d\nafter\n");
    EXPECT_EQ(Records(), "<29>keldra: notice a\n|<27>keldra: error d\n|<27>keldra: abc|");
}

TEST_F(SyslogTest, LinesAreLostAndCountedWhileNobodyReadsThem) {
    const long queue = std::stol(ReadFile("/proc/sys/net/unix/max_dgram_qlen"));
    const long lines = queue + 40;
    Capture quiet(STDERR_FILENO);
    OpenSyslog("keldra");
    for (int i = 0; i < lines; ++i) {
        LogMessage(0, "queued\n");
    }
    const std::string queued = Records();
    const long lost = lines - std::count(queued.begin(), queued.end(), '|');
    EXPECT_GT(lost, 0);
    const auto notice = [](long count) {
        return "<29>keldra: " + std::to_string(count) +
               " lines were lost: the system logger did not take them\n|";
    };
    LogError("next\n");
    LogError("last\n");
    EXPECT_EQ(Records(), notice(lost) + "<27>keldra: next\n|<27>keldra: last\n|");

    close(fd_);
    LogMessage(0, "to nobody\n");
    fd_ = BindSyslogSocket();
    LogMessage(0, "to the next one\n");
    EXPECT_EQ(Records(), notice(1) + "<29>keldra: to the next one\n|");

    const int replaced = std::exchange(fd_, BindSyslogSocket());  // hangs and does not end
    for (int i = 0; i < lines; ++i) {
        LogMessage(0, "to the one after\n");
        EXPECT_NE(Records(), "");
    }
    close(replaced);
    CloseSyslog();
}

}  // namespace
