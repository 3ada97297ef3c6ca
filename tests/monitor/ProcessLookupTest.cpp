#include "monitor/ProcessLookup.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>
#include <string>
#include <vector>

#include "tests/support/Descriptors.h"
#include "tests/support/NamedProcess.h"

namespace Monitor {

namespace {

TEST(ParseProcessStatTest, HostileAndDamagedLines) {
    const std::string longName(140, 'n');
    const struct {
        std::string line;
        const char* name;  // null: refused
        int32_t parent;
    } cases[] = {
        {"12 (keldra) S 1 12 12 0", "keldra", 1},
        {"12 (a b  c) R 7", "a b  c", 7},
        {"12 (two\nlines) S 1 1", "two\nlines", 1},
        {"12 (fifteen_letters) D 4194304 0", "fifteen_letters", 4194304},
        {"12 () S 1 1", "", 1},
        {"12 ((sd-pam) S 1 1", "(sd-pam", 1},
        {"12 (x) S -1 1", "x", -1},
        {"12\t(x)\tS\t1", "x", 1},
        {"(x) S 1", nullptr, 0},                  // no blank in front of the name
        {" (x) S 1", "x", 1},                     // no digits at all are digits enough
        {"12 (a) b) S 1 1", nullptr, 0},          // a name that holds ")" is cut there
        {"12 (keldra) S 1) S 7 1", "keldra", 1},  // and what follows may look right
        // Nothing beyond 127 bytes is looked at: here the number's last digit.
        {"12 (" + std::string(115, 'n') + ") S 12345", longName.c_str() + 25, 1234},
        {"12 (keldra", nullptr, 0},
        {"12 (keldra)", nullptr, 0},
        {"12 (keldra) ", nullptr, 0},
        {"12 (keldra) S", nullptr, 0},
        {"12 (keldra) S ", nullptr, 0},
        {"12 (keldra) S x", nullptr, 0},
        {"12 (keldra) 0 1", nullptr, 0},
        {"12 (keldra)S 1", nullptr, 0},
        {"12 keldra S 1", nullptr, 0},
        {"12", nullptr, 0},
        {"", nullptr, 0},
        {"12 (" + longName + ") S 1", nullptr, 0},
        {"12 (keldra) S 1 " + std::string(300, '9'), "keldra", 1},
    };
    for (const auto& c : cases) {
        char name[kProcessNameSize] = "untouched";
        int32_t parent = 99;
        const bool parsed = ParseProcessStat(c.line.c_str(), name, parent);
        ASSERT_EQ(parsed, c.name != nullptr) << c.line;
        EXPECT_STREQ(name, c.name != nullptr ? c.name : "untouched") << c.line;
        EXPECT_EQ(parent, c.name != nullptr ? c.parent : 99) << c.line;
    }
}

TEST(ProcessLookupTest, ReadsRealProcessesWithHostileNames) {
    const auto before = OpenDescriptors();
    for (const char* prefix : {"kt", "k t", "k(t", "k\nt", "15_bytes"}) {
        const std::string own = OwnName(prefix);
        const char* const given = own.c_str();
        const NamedProcess process(given);
        char name[kProcessNameSize] = "";
        int32_t parent = 0;
        ASSERT_TRUE(ReadProcessStat(process.Pid(), name, parent)) << given;
        EXPECT_STREQ(name, given);
        EXPECT_EQ(parent, getpid());
        EXPECT_EQ(FindProcessId(given), process.Pid());
        EXPECT_TRUE(IsProcessRunning(given, process.Pid()));
        EXPECT_FALSE(IsProcessRunning("another", process.Pid()));  // a PID that was reused
    }
    const NamedProcess cut("kt a) S 1");
    EXPECT_FALSE(IsProcessRunning("kt a) S 1", cut.Pid()));
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST(ProcessLookupTest, NothingToFind) {
    const std::string own = OwnName("kt");
    const char* const kName = own.c_str();
    NamedProcess ended(own);
    const pid_t pid = ended.Pid();
    kill(pid, SIGKILL);
    ended.Wait();
    char name[kProcessNameSize] = "";
    int32_t parent = 0;
    EXPECT_FALSE(ReadProcessStat(pid, name, parent));
    EXPECT_FALSE(IsProcessRunning(kName, pid));
    EXPECT_EQ(FindProcessId(kName), 0);
    EXPECT_FALSE(IsProcessRunning(kName, 0));
    EXPECT_FALSE(IsProcessRunning(nullptr, getpid()));
    EXPECT_EQ(FindProcessId(nullptr), -1);
    std::vector<int32_t> pids;
    EXPECT_FALSE(CollectProcessIds(nullptr, pids));
    EXPECT_TRUE(CollectProcessIds(kName, pids));
    EXPECT_TRUE(pids.empty());
}

TEST(ProcessLookupTest, FirstAndOtherFollowTheDirectory) {
    const std::string own = OwnName("kt");
    const NamedProcess a(own);
    const NamedProcess b(own);
    std::vector<int32_t> pids;
    ASSERT_TRUE(CollectProcessIds(own.c_str(), pids));
    ASSERT_EQ(pids.size(), 2U);
    EXPECT_EQ(FindProcessId(own.c_str()), pids[0]);
    EXPECT_EQ(FindOtherProcessId(own.c_str()), pids[0]);  // the caller has another name
    char before[16] = "";
    prctl(PR_GET_NAME, before);
    prctl(PR_SET_NAME, own.c_str());
    EXPECT_EQ(FindOtherProcessId(own.c_str()), pids[0] == getpid() ? pids[1] : pids[0]);
    const std::string single = OwnName("single");
    prctl(PR_SET_NAME, single.c_str());
    EXPECT_EQ(FindProcessId(single.c_str()), getpid());
    EXPECT_EQ(FindOtherProcessId(single.c_str()), 0);
    prctl(PR_SET_NAME, before);
}

TEST(SignalProcessesByNameTest, NobodyToSignalIsFalseAndTakesNoPause) {
    timespec start{};
    timespec end{};
    clock_gettime(CLOCK_MONOTONIC, &start);
    // With the pause these would take 20 seconds and more.
    for (int i = 0; i < 20; ++i) {
        EXPECT_FALSE(SignalProcessesByName(OwnName("kt").c_str(), SIGTERM));
    }
    clock_gettime(CLOCK_MONOTONIC, &end);
    EXPECT_LT(end.tv_sec - start.tv_sec, 19);
}

TEST(SignalProcessesByNameTest, EveryProcessOfTheNameIsSignalledAndNoOther) {
    const std::string own = OwnName("kt");
    const std::string bystander = OwnName("other");
    NamedProcess a(own);
    NamedProcess b(own);
    const NamedProcess other(bystander);
    EXPECT_TRUE(SignalProcessesByName(own.c_str(), SIGQUIT));
    EXPECT_EQ(a.Wait(), SIGQUIT);
    EXPECT_EQ(b.Wait(), SIGQUIT);
    EXPECT_TRUE(IsProcessRunning(bystander.c_str(), other.Pid()));
}

TEST(SignalProcessesByNameTest, CallerIsSignalledLast) {
    const std::string own = OwnName("kt");
    // In a child, which takes the name of its sibling and does not survive the call.
    NamedProcess sibling(own);
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_NAME, own.c_str());
        (void)SignalProcessesByName(own.c_str(), SIGTERM);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_EQ(sibling.Wait(), SIGTERM);  // had it come after the caller, it would still live
}

TEST(SignalProcessesByNameTest, InvalidSignalIsAFailure) {
    const std::string own = OwnName("kt");
    const NamedProcess process(own);
    EXPECT_FALSE(SignalProcessesByName(own.c_str(), 1000));
}

}  // namespace

}  // namespace Monitor
