#include "monitor/ProcessLookup.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include "core/signals/SignalWindow.h"
#include "monitor/MonitorSettings.h"
#include "monitor/StatusReport.h"
#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"
#include "tests/support/Heap.h"
#include "tests/support/NamedProcess.h"
#include "tests/support/TempDir.h"

using namespace Monitor;

namespace {

TEST(ParseProcessStatTest, HostileAndDamagedLines) {
    const std::string longName(140, 'n');
    // The line, the name (null: refused) and the parent.
    const std::tuple<std::string, const char*, int32_t> cases[] = {
        {"12 (keldra) S 1 12 12 0", "keldra", 1},
        {"12 (fifteen_letters) D 4194304 0", "fifteen_letters", 4194304},
        {"12 ((sd-pam) S 1 1", "(sd-pam", 1},
        {"(x) S 1", nullptr, 0},  // no blank in front of the name
        {" (x) S 1", "x", 1},     // the PID's digits may be absent
        {"12_(x) S 1", nullptr, 0},
        {"12 (x)_S 1", nullptr, 0},
        {"12 (x) S_1", nullptr, 0},
        {"12 (a) b) S 1 1", nullptr, 0},          // a name that holds ")" is cut there
        {"12 (keldra) S 1) S 7 1", "keldra", 1},  // and the text after it may look right
        // Bytes after the first 127 are ignored: here the number's last digit.
        {"12 (" + std::string(115, 'n') + ") S 12345", longName.c_str() + 25, 1234},
        {"12 (keldra", nullptr, 0},
        {"12 (keldra) S", nullptr, 0},
        {"12 (keldra) S ", nullptr, 0},
        {"12 (keldra) 0 1", nullptr, 0},
        {"12 (" + longName + ") S 1", nullptr, 0},
    };
    for (const auto& [line, expected, expectedParent] : cases) {
        char name[kProcessNameSize] = "untouched";
        int32_t parent = 99;
        ASSERT_EQ(ParseProcessStat(line.c_str(), name, parent), expected != nullptr) << line;
        EXPECT_STREQ(name, expected != nullptr ? expected : "untouched") << line;
        EXPECT_EQ(parent, expected != nullptr ? expectedParent : 99) << line;
    }
}

TEST(ProcessLookupTest, ReadsRealProcessesWithHostileNames) {
    const auto before = OpenDescriptors();
    for (const char* prefix : {"kt", "k t", "k(t", "k\nt", "k\xe9t", "15_bytes"}) {
        const std::string given = OwnName(prefix);
        const NamedProcess process(given);
        char name[kProcessNameSize] = "";
        int32_t parent = 0;
        ASSERT_TRUE(ReadProcessStat(process.Pid(), name, parent)) << given;
        EXPECT_EQ(name, given);
        EXPECT_EQ(parent, getpid());
        EXPECT_EQ(FindProcessId(given.c_str()), process.Pid());
        EXPECT_FALSE(IsProcessRunning("another", process.Pid()));  // a PID that was reused
    }
    // The time of the start comes behind a name of any kind.
    const NamedProcess process(OwnName("k) S 1"));
    uint64_t ticks = 0;
    ASSERT_TRUE(ReadStartTime(process.Pid(), ticks));
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    EXPECT_NEAR(static_cast<double>(ticks) / static_cast<double>(sysconf(_SC_CLK_TCK)),
                static_cast<double>(now.tv_sec), 100);
    EXPECT_EQ(OpenDescriptors(), before);
}

// Processes of a name that nobody else uses.
struct ProcessesByNameTest : testing::Test {
    const std::string own_ = OwnName("kt");
    const char* const name_ = own_.c_str();
};

TEST_F(ProcessesByNameTest, NothingToFind) {
    NamedProcess ended(own_);
    const pid_t pid = ended.Pid();
    EXPECT_TRUE(IsProcessRunning(name_, pid));
    kill(pid, SIGKILL);
    ended.Wait();
    EXPECT_FALSE(IsProcessRunning(name_, pid));
    EXPECT_FALSE(IsProcessRunning(name_, 0));
    EXPECT_EQ(FindProcessId(name_), 0);
    EXPECT_FALSE(SignalProcessesByName(name_, SIGTERM));
}

TEST_F(ProcessesByNameTest, PauseTakesItsSecondAndLetsHeldSignalsIn) {
    const NamedProcess found(own_);
    const auto pause = [this] {
        static int handled = 0;
        (void)signal(SIGALRM, [](int) { ++handled; });
        sigset_t held;
        sigemptyset(&held);
        sigaddset(&held, SIGALRM);
        Quenda::BlockSignalsOutsideWindows(held);
        (void)ualarm(1000, 1000);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(SignalProcessesByName(name_, SIGCONT));
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
        EXPECT_GT(handled, 1);
        _exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(pause(), testing::ExitedWithCode(0), "");
}

TEST_F(ProcessesByNameTest, OneThatEndsAfterItWasFoundIsNoFailureButCannotBeQueried) {
    static pid_t found = 0;
    const auto endWhenFound = [] {  // to remember its PID, the search allocates
        onAllocation = nullptr;
        kill(found, SIGKILL);
        waitpid(found, nullptr, 0);
    };
    const NamedProcess signalled(own_);
    found = signalled.Pid();
    onAllocation = endWhenFound;
    EXPECT_TRUE(SignalProcessesByName(name_, SIGTERM));

    settings.monitor_process_name = own_;
    const NamedProcess queried(own_);
    found = queried.Pid();
    Capture standardError(2);
    onAllocation = endWhenFound;
    QueryStatus();
    EXPECT_EQ(standardError.Stop(), "Failed to signal Keldra Monitor " + std::to_string(found) +
                                        " to print its status: No such process\n");
}

TEST_F(ProcessesByNameTest, OneThatBelongsToSomebodyElseIsAFailure) {
    const NamedProcess process(own_);
    const auto signal = [&] {
        // As a user who may not signal it; only root can become one.
        _exit(setuid(65534) == 0 && SignalProcessesByName(name_, SIGTERM) ? 1 : 0);
    };
    EXPECT_EXIT(signal(), testing::ExitedWithCode(0), "");
}

TEST_F(ProcessesByNameTest, EveryOneIsSignalledAndTheCallerLast) {
    // An emulator of another processor makes up the stat file of its own process, with a digit for
    // the state: the caller cannot find itself there.
    if (ReadFile("/proc/self/stat").find(") 0 ") != std::string::npos) {
        GTEST_SKIP() << "the emulator makes up the own process's stat file";
    }
    const pid_t caller = fork();
    if (caller == 0) {
        prctl(PR_SET_NAME, name_);
        raise(SIGSTOP);
        (void)SignalProcessesByName(name_, SIGTERM);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(caller, &status, WUNTRACED), caller);
    NamedProcess other(own_);  // comes after the caller in the process table
    const NamedProcess bystander(OwnName("bystand"));
    kill(caller, SIGCONT);
    ASSERT_EQ(waitpid(caller, &status, 0), caller);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
    EXPECT_EQ(other.Wait(), SIGTERM);  // signalled after the caller, it would still live
    EXPECT_EQ(FindProcessId(OwnName("bystand").c_str()), bystander.Pid());
}

}  // namespace
