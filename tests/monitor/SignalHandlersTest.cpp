#include "monitor/SignalHandlers.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "core/log/TraceList.h"
#include "core/output/StdioWritable.h"
#include "monitor/StartUp.h"
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

TEST_F(SignalHandlersTest, InterruptNothingForGoodAndNotEachOther) {
    InProcess(
        [] {
            for (const int signal : {SIGUSR1, SIGINT, SIGTSTP, SIGQUIT, SIGTERM}) {
                struct sigaction action {};
                sigaction(signal, nullptr, &action);
                EXPECT_EQ(action.sa_flags & SA_RESTART, SA_RESTART) << signal;
                for (const int other : {SIGUSR1, SIGINT, SIGTSTP, SIGQUIT, SIGTERM}) {
                    EXPECT_EQ(sigismember(&action.sa_mask, other), 1) << signal << " " << other;
                }
            }
        },
        1);
}

TEST_F(SignalHandlersTest, StatusRequestKeepsTheErrorOfTheCallThatItInterrupts) {
    InProcess(
        [] {
            errno = EINTR;
            raise(SIGUSR1);  // there is no folder for the status file
            EXPECT_EQ(errno, EINTR);
        },
        1);
}

TEST(RunMonitorTest, WithoutMemoryEndsWithALineAnd1) {
    char program[] = "keldra_monitor";
    char* argv[] = {program, nullptr};
    const auto start = [&argv] {
        onAllocation = [] { throw std::bad_alloc(); };
        _exit(RunMonitor(1, argv));
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(1), "Out of memory: Keldra Monitor ends\n");
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
