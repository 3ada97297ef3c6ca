#include "monitor/SignalHandlers.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string>

#include "core/log/TraceList.h"
#include "core/output/StdioWritable.h"
#include "monitor/MonitorSettings.h"
#include "monitor/StartUp.h"
#include "tests/support/Capture.h"
#include "tests/support/Heap.h"

using namespace Monitor;

namespace {

// In a process of its own, whose signals nobody needs afterwards.
struct SignalHandlersTest : testing::Test {
    template <typename Work>
    static void InProcess(Work work, int exitCode) {
        EXPECT_EXIT(
            {
                InstallSignalHandlers();
                work();
                _exit(HasFailure() ? 99 : 1);
            },
            testing::ExitedWithCode(exitCode), "");
    }
};

TEST_F(SignalHandlersTest, StatusRequestKeepsTheErrorOfTheCallThatItInterrupts) {
    InProcess(
        [] {
            errno = EINTR;
            raise(SIGUSR1);  // there is no folder for the status file
            EXPECT_EQ(errno, EINTR);
        },
        1);
}

int RunWith(const char* option) {
    char program[] = "keldra_monitor";
    char* argv[] = {program, const_cast<char*>(option), nullptr};
    optind = 0;  // glibc: start over
    return RunMonitor(2, argv);
}

TEST(RunMonitorTest, WithoutMemoryEndsWithALineAnd1) {
    const auto start = [] {
        onAllocation = [] { throw std::bad_alloc(); };
        _exit(RunWith("-d"));
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(1), "Out of memory: Keldra Monitor ends\n");
}

TEST(RunMonitorTest, UnreadableProcessTableRefuses) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers need descriptors themselves";
#endif
    const auto start = [] {
        const rlimit none = {3, 3};
        setrlimit(RLIMIT_NOFILE, &none);
        _exit(RunWith("-d"));
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(1), "^Keldra Monitor refuses to start.*\n$");
}

TEST(RunMonitorTest, VersionGoesToStandardErrorAlone) {
    settings = MonitorSettings();
    Capture output(1);
    Capture errors(2);
    EXPECT_EQ(RunWith("-v"), 0);
    const std::string version = errors.Stop();
    EXPECT_EQ(version.find("Application: keldra_monitor\n"), 0U) << version;
    EXPECT_NE(version.find(" watchdog_control\n"), std::string::npos) << version;
    EXPECT_EQ(output.Stop(), "");
}

TEST_F(SignalHandlersTest, WithoutMemoryTheReportIsGivenUpAndAShutdownGoesOn) {
    if (access("/proc/cpld/watchdog", F_OK) == 0) {
        GTEST_SKIP() << "this machine has the board's watchdog, which a shutdown arms";
    }
    for (const int signal : {SIGINT, SIGTERM}) {
        InProcess(
            [signal] {
                // In debugging mode the watchdog traces what it does.
                static Quenda::StdioWritable standardError(stderr);
                Quenda::GlobalTraceList().AddSink(9, &standardError);
                onAllocation = [] { throw std::bad_alloc(); };
                raise(signal);
            },
            0);
    }
}

}  // namespace
