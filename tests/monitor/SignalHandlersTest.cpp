#include "monitor/SignalHandlers.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "monitor/StartUp.h"
#include "tests/support/Heap.h"

using namespace Monitor;

namespace {

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
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        const rlimit none = {3, limit.rlim_max};  // valgrind permits no other maximum
        setrlimit(RLIMIT_NOFILE, &none);
        _exit(RunWith("-d"));
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(1), "^Keldra Monitor refuses to start.*\n$");
}

TEST(SignalHandlersTest, WithoutMemoryTheReportIsGivenUpAndAShutdownGoesOn) {
    if (access("/proc/cpld/watchdog", F_OK) == 0) {
        GTEST_SKIP() << "this machine has the board's watchdog, which a shutdown arms";
    }
    for (const int signal : {SIGINT, SIGTERM}) {
        const auto shutDown = [signal] {
            InstallSignalHandlers();
            onAllocation = [] { throw std::bad_alloc(); };
            errno = EINTR;
            raise(SIGUSR1);
            EXPECT_EQ(errno, EINTR);  // of the call that the request interrupts
            raise(HasFailure() ? SIGKILL : signal);
        };
        EXPECT_EXIT(shutDown(), testing::ExitedWithCode(0),
                    "^Out of memory: this status report is given up\n");
    }
}

}  // namespace
