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
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == -1 ||
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

class SyslogTest : public testing::Test {
protected:
    // Runs `body` in a child that has a syslog of its own.
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
        if (WEXITSTATUS(status) == kNotPermitted) {
            GTEST_SKIP() << "mount namespaces are not permitted here";
        }
        EXPECT_EQ(status, 0);
        records_ = ReadFile(dir_.File("records"));
        errors_ = ReadFile(dir_.File("stderr"));
    }

    TempDir dir_;
    std::string records_;
    std::string errors_;
};

TEST_F(SyslogTest, GetsLevelZeroAndErrorsOnceEachWhileItIsOpen) {
    InPrivateSyslog([] {
        LogMessage(0, "before %d\n", 0);
        LogError("before %d\n", 1);
        EXPECT_FALSE(IsSyslogOpen());
        OpenSyslog("first");
        OpenSyslog("keldra");
        EXPECT_TRUE(IsSyslogOpen());
        LogMessage(0, "notice %s\n", "a");
        LogMessage(2, "detail %s\n", "b");
        LogMessage(-1, "below %s\n", "c");
        LogError("error %s\n", "d");
        CloseSyslog();
        CloseSyslog();
        EXPECT_FALSE(IsSyslogOpen());
        LogMessage(0, "after\n");
        LogError("after\n");
    });
    if (!IsSkipped()) {
        EXPECT_EQ(records_, "<29>keldra: notice a\n|<27>keldra: error d\n|");
        EXPECT_EQ(errors_,
                  "before 0\nbefore 1\nnotice a\ndetail b\nbelow c\nerror d\nafter\nafter\n");
    }
}

TEST_F(SyslogTest, HooksInForceBeforeAreCalledAndComeBack) {
    InPrivateSyslog([] {
        const LogHooks mine = {
            [](const char* format, va_list arguments) { vfprintf(stderr, format, arguments); },
            [](int level, const char*, va_list arguments) {
                fprintf(stderr, "%d:%s;", level, va_arg(arguments, const char*));
            }};
        CurrentLogHooks() = mine;
        OpenSyslog("keldra");
        LogMessage(0, "%s", "zero");
        LogMessage(2, "%s", "two");
        LogError("%s", "plain");
        CloseSyslog();
        EXPECT_EQ(CurrentLogHooks().plain, mine.plain);
        EXPECT_EQ(CurrentLogHooks().levelled, mine.levelled);
    });
    if (!IsSkipped()) {
        EXPECT_EQ(records_, "<29>keldra: zero|<27>keldra: plain|");
        EXPECT_EQ(errors_, "0:zero;2:two;plain");
    }
}

TEST_F(SyslogTest, SinkSendsEachWriteAsOneErrorRecord) {
    InPrivateSyslog([] {
        OpenSyslog("keldra");
        EXPECT_EQ(SyslogSink().Write("abcdef", 3), 3U);
        SyslogSink().Printf("%d%%\n", 50);
        SyslogSink().Puts("\n");
    });
    if (!IsSkipped()) {
        EXPECT_EQ(records_, "<27>keldra: abc|<27>keldra: 50%\n|<27>keldra: \n|");
    }
}

TEST_F(SyslogTest, OptionsPutTheSinkIntoTheListAtTheirLevel) {
    const auto options = [](const Json::Value& isOn, const Json::Value& level) {
        Json::Value document(Json::objectValue);
        document["syslogger_on"] = isOn;
        document["syslogger_level"] = level;
        return OptionsNode(document);
    };
    const OptionsNode empty;
    const OptionsNode on = options(true, Json::Value());
    const OptionsNode onAtThree = options(true, 3);
    const OptionsNode off = options(false, 9);
    const OptionsNode absent = options(Json::Value(), 9);
    const OptionsNode noObject(Json::Value("text"));
    const struct {
        const OptionsNode* first;
        const OptionsNode* second;
        std::string traced;  // of the levels 0 to 9
    } cases[] = {
        {&empty, nullptr, ""},        {&absent, &noObject, ""},
        {&on, nullptr, "012345"},     {&on, &onAtThree, "0123"},
        {&onAtThree, &on, "012345"},  {&on, &off, ""},
        {&off, &absent, ""},          {&onAtThree, &absent, "0123"},
        {&onAtThree, &empty, "0123"}, {&onAtThree, &noObject, "0123"},
    };
    for (const auto& c : cases) {
        InPrivateSyslog([&c] {
            TraceList list;
            ApplySysloggerOptions(list, c.first);
            ApplySysloggerOptions(list, c.second);
            OpenSyslog("k");
            for (int level = 0; level < 10; ++level) {
                list.Trace(level, "%d", level);
            }
        });
        std::string expected;
        for (const char level : c.traced) {
            expected += std::string("<27>k: ") + level + "|";
        }
        if (IsSkipped()) {
            return;
        }
        EXPECT_EQ(records_, expected) << "case " << &c - cases;
    }
}

}  // namespace
