#include "core/log/Syslog.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>

#include "core/log/Log.h"
#include "core/log/SysloggerOptions.h"
#include "core/log/TraceList.h"
#include "core/options/OptionsNode.h"
#include "tests/support/Capture.h"
#include "tests/support/TempDir.h"

using namespace Quenda;

namespace {

constexpr int kNotPermitted = 77;

// A /dev of this process's own, with a syslog socket in it. -1 when that is not permitted.
int BindSyslogSocket() {
    if ((unshare(CLONE_NEWNS) == -1 && unshare(CLONE_NEWUSER | CLONE_NEWNS) == -1) ||
        mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == -1 ||
        mount("none", "/dev", "tmpfs", 0, nullptr) == -1) {
        return -1;
    }
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0);
    const sockaddr_un address = {AF_UNIX, "/dev/log"};
    return bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == -1 ? -1 : fd;
}

// The records received, without their time stamps, a "|" after each.
std::string Records(int fd) {
    std::string records;
    char record[1024];
    for (ssize_t n = 0; (n = recv(fd, record, sizeof(record), 0)) >= 0;) {
        const std::string text(record, static_cast<size_t>(n));
        records += text.substr(0, text.find('>') + 1) + text.substr(text.find('>') + 17) + "|";
    }
    return records;
}

// Every case runs in a child that has a syslog of its own.
class SyslogTest : public testing::Test {
protected:
    void SetUp() override {
        InPrivateSyslog([] {});
        if (isRefused_) {
            GTEST_SKIP() << "mount namespaces are not permitted here";
        }
    }
    void InPrivateSyslog(const std::function<void()>& body) {
        const pid_t child = fork();
        if (child == 0) {
            const int fd = BindSyslogSocket();
            if (fd == -1) {
                _exit(kNotPermitted);
            }
            Capture capture(STDERR_FILENO);
            body();
            std::ofstream(dir_.File("stderr")) << capture.Stop();
            std::ofstream(dir_.File("records")) << Records(fd);
            _exit(HasFailure() ? 1 : 0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        isRefused_ = WEXITSTATUS(status) == kNotPermitted;
        EXPECT_TRUE(status == 0 || isRefused_);
        records_ = ReadFile(dir_.File("records"));
        errors_ = ReadFile(dir_.File("stderr"));
    }

    TempDir dir_;
    bool isRefused_ = false;
    std::string records_;
    std::string errors_;
};

TEST_F(SyslogTest, GetsLevelZeroAndErrorsOnceEachWhileItIsOpen) {
    InPrivateSyslog([] {
        const LogHooks before = CurrentLogHooks();
        LogError("before %d\n", 1);
        OpenSyslog("first");
        OpenSyslog("keldra");
        LogMessage(0, "notice %s\n", "a");
        LogMessage(2, "detail %s\n", "b");
        LogError("error %s\n", "d");
        SyslogSink().Write("abcdef", 3);
        SyslogSink().Printf("%d%%\n", 50);
        CloseSyslog();
        CloseSyslog();
        EXPECT_EQ(CurrentLogHooks().levelled, before.levelled);
        LogMessage(0, "after\n");
    });
    EXPECT_EQ(errors_, "before 1\nnotice a\ndetail b\nerror d\nafter\n");
    EXPECT_EQ(records_,
              "<29>keldra: notice a\n|<27>keldra: error d\n|<27>keldra: abc|<27>keldra: 50%\n|");
}

OptionsNode Options(const Json::Value& isOn, const Json::Value& level) {
    Json::Value document(Json::objectValue);
    document["syslogger_on"] = isOn;
    document["syslogger_level"] = level;
    return OptionsNode(document);
}

TEST_F(SyslogTest, OptionsPutTheSinkIntoTheListAtTheirLevel) {
    const Json::Value null;
    const OptionsNode on = Options(true, null), three = Options(true, 3), off = Options(false, 9);
    const OptionsNode empty, absent = Options(null, 9), noObject(Json::Value("text"));
    const struct {
        const OptionsNode* first;
        const OptionsNode* second;
        const char* traced;  // of the levels 0 to 6
    } cases[] = {{&on, nullptr, "012345"}, {&on, &three, "0123"},       {&three, &on, "012345"},
                 {&on, &off, ""},          {&off, &absent, ""},         {&three, &absent, "0123"},
                 {&three, &empty, "0123"}, {&three, &noObject, "0123"}, {&empty, &absent, ""}};
    for (const auto& c : cases) {
        InPrivateSyslog([&c] {
            TraceList list;
            ApplySysloggerOptions(list, c.first);
            ApplySysloggerOptions(list, c.second);
            OpenSyslog("");
            for (int level = 0; level < 7; ++level) {
                list.Trace(level, "%d", level);
            }
        });
        std::string expected;
        for (const char* level = c.traced; *level != 0; ++level) {
            expected += std::string("<27>: ") + *level + "|";
        }
        EXPECT_EQ(records_, expected) << "case " << &c - cases;
    }
}

}  // namespace
