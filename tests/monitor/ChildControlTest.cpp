#include "monitor/ChildControl.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/Capture.h"
#include "tests/support/TempDir.h"

using namespace Monitor;

namespace {

// Starts scripts of the test's own as Keldra, reached from /usr/sbin.
struct StartKeldraTest : testing::Test {
    bool Start(const std::string& script) {
        dir_.Write("keldra", "#!/bin/sh\n" + script + "\n");
        EXPECT_EQ(chmod(dir_.File("keldra").c_str(), 0755), 0);
        Capture log(2);
        const bool started = StartKeldra(name_, OptionsFile(OptionsType::Factory_Options));
        log_ = log.Stop();
        return started;
    }
    // The line of a start that failed, behind the command line.
    std::string Complaint() const {
        const std::string commandLine =
            "/usr/sbin/" + name_ + " -cp 23 -cfg /sysopt/factory/keldra_factory.json\n";
        EXPECT_EQ(log_.find(commandLine), 0U) << log_;
        return log_.substr(commandLine.size());
    }

    TempDir dir_;
    const std::string name_ = "../.." + dir_.File("keldra");
    std::string log_;
};

TEST_F(StartKeldraTest, InheritsTheStandardStreamsAlone) {
    const int descriptor = open(dir_.Write("inherited", "").c_str(), O_RDONLY);
    EXPECT_EQ(dup2(descriptor, 1023), 1023);
    EXPECT_TRUE(Start("ls -l /proc/$$/fd >" + dir_.File("open") + "; echo \"$@\" >&2"));
    close(1023);
    close(descriptor);
    EXPECT_EQ(Complaint(), "-cp 23 -cfg /sysopt/factory/keldra_factory.json\n");
    const std::string open = ReadFile(dir_.File("open"));
    EXPECT_EQ(open.find("inherited"), std::string::npos) << open;
    EXPECT_NE(open.find("keldra"), std::string::npos) << open;  // the shell's script
}

TEST_F(StartKeldraTest, LauncherIsWaitedForThroughInterruptions) {
    struct sigaction interrupt = {}, old = {};
    interrupt.sa_handler = [](int) {};  // without SA_RESTART
    sigaction(SIGUSR1, &interrupt, &old);
    EXPECT_TRUE(Start("i=0; while [ $((i += 1)) -lt 300 ]; do kill -USR1 $PPID; done"));
    sigaction(SIGUSR1, &old, nullptr);
    EXPECT_EQ(Complaint(), "");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);  // no zombie is left
}

TEST_F(StartKeldraTest, SuccessAndFailuresAreTold) {
    EXPECT_FALSE(Start("exit 3"));
    EXPECT_EQ(Complaint(), "Keldra failed to start, status: 3\n");
    EXPECT_FALSE(Start("kill -KILL $$"));
    EXPECT_NE(Complaint().find(" did not exit normally!\n"), std::string::npos);
    // The kernel reaps the children of a process that ignores SIGCHLD: there is no status.
    (void)signal(SIGCHLD, SIG_IGN);
    EXPECT_FALSE(Start(":"));
    (void)signal(SIGCHLD, SIG_DFL);
    EXPECT_EQ(Complaint().find("Failed to wait on Keldra "), 0U);
    EXPECT_NE(Complaint().find(": No child processes\n"), std::string::npos);
    EXPECT_FALSE(StartKeldra("absent", nullptr));
    EXPECT_FALSE(SetLedsToError("false"));
    EXPECT_TRUE(StartKeldra("../../bin/true", nullptr));
}

TEST(StartKeldraWithoutProcessesTest, FailureIsTold) {
    const auto start = [] {
        (void)!setuid(65534);  // root has no limit
        rlimit limit{};
        getrlimit(RLIMIT_NPROC, &limit);
        limit.rlim_cur = 0;
        setrlimit(RLIMIT_NPROC, &limit);
        _exit(StartKeldra("../../bin/sh", nullptr) ? 1 : 0);
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(0),
                "^/usr/sbin/../../bin/sh -cp 23\n"
                "Failed to fork for Keldra: Resource temporarily unavailable\n$");
}

}  // namespace
