#include "shell/ShellRunner.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <vector>

#include "core/signals/SignalWindow.h"
#include "tests/support/Descriptors.h"
#include "tests/support/Heap.h"

using namespace Quenda;

namespace {

// Every case checks that no descriptor and no child is left.
struct ShellRunnerTest : testing::Test {
    void TearDown() override {
        EXPECT_EQ(OpenDescriptors(), before_);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    std::map<int, std::string> before_ = OpenDescriptors();
};

TEST_F(ShellRunnerTest, OutputGainsWhatTheCommandWroteAndHowItEnded) {
    const std::pair<const char*, std::string> cases[] = {
        {"echo 1; echo 2 >&2; echo 3; echo $0", "1\n2\n3\n/bin/sh\n"},
        {"printf 'a\\000\\377'", std::string("a\0\xff", 3)},
        {"printf 1", "1"},
        {"head -c 3000001 /dev/zero", std::string(3000001, '\0')},
        {"printf part; exit 2", "partShell command exited with code 2\n"},
        {"echo x; kill -KILL $$", "x\nShell Failed: Killed by signal 9\n"},
        // A command that is stopped has not ended.
        {"exec >&- 2>&-; (sleep 0.1; kill -CONT $$) & kill -STOP $$; exit 3",
         "Shell command exited with code 3\n"},
    };
    for (const auto& [command, expected] : cases) {
        std::string output = "kept:";
        EXPECT_EQ(RunShellCommand(command, output), expected.find("Shell ") == std::string::npos);
        EXPECT_TRUE(output == "kept:" + expected) << command << " " << output.size();
    }
}

TEST_F(ShellRunnerTest, ProgramGetsThirtyArgumentsAndAnEmptyCommandIsNone) {
    std::vector<const char*> argv(40, "1");
    argv[0] = "echo";
    std::string output;
    EXPECT_TRUE(RunExecCommand("/bin/echo", 40, argv.data(), output));
    EXPECT_EQ(output.size(), 29U * 2);
    EXPECT_TRUE(RunExecCommand("/bin/echo", 1, argv.data(), output = ""));
    EXPECT_EQ(output, "\n");
    EXPECT_FALSE(RunShellCommand("", output));
    EXPECT_EQ(output, "\n");
}

TEST_F(ShellRunnerTest, SystemCommandSucceedsByExitingWith0) {
    EXPECT_TRUE(RunSystemCommand("exit 0"));
    EXPECT_FALSE(RunSystemCommand("exit 1"));
    EXPECT_FALSE(RunSystemCommand("kill -KILL $$"));
    EXPECT_FALSE(RunSystemCommand(""));
}

TEST_F(ShellRunnerTest, CommandHasOnlyItsPipeAndWhatTheCallerHasOpen) {
    const auto run = [] {
        for (const int fd : {3, 256, 1023}) {
            dup2(STDIN_FILENO, fd);
        }
        CloseInheritedDescriptors();
        std::string output;
        (void)RunShellCommand("cd /proc/self/fd; echo *", output);
        EXPECT_EQ(output, "0 1 2 3\n");
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        (void)RunShellCommand("echo 1; echo 2 >&2", output = "");
        _exit(output == "1\n2\n" && !HasFailure() ? 0 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

bool isHandlerArmed = false;

TEST_F(ShellRunnerTest, FailedExecIsExplainedAndRunsNoExitHandler) {
    atexit([] { (void)!write(STDOUT_FILENO, "handler", isHandlerArmed ? 7 : 0); });
    const char* const argv[] = {"name"};
    std::string output;
    fflush(stdout);  // valgrind would write the buffered text in the child, too
    isHandlerArmed = true;
    EXPECT_FALSE(RunExecCommand("/nonexistent", 1, argv, output));
    isHandlerArmed = false;
    EXPECT_EQ(output,
              "Failed to exec \"/nonexistent\": No such file or directory\n"
              "Shell command exited with code 1\n");
}

TEST_F(ShellRunnerTest, WithoutAPipeOrAProcessTheReasonReplacesTheOutput) {
    const std::pair<__rlimit_resource_t, std::string> cases[] = {
        {RLIMIT_NOFILE, "pipe: Too many open files\n"},
        {RLIMIT_NPROC, "fork: Resource temporarily unavailable\n"}};
    for (const auto& [resource, reason] : cases) {
        const auto run = [resource = resource, expected = reason] {
            (void)!setresuid(65534, 65534, 65534);  // root may have any number of them
            const auto before = OpenDescriptors();
            std::string output = "lost";
            rlimit limit{};
            getrlimit(resource, &limit);
            const rlimit none = {0, limit.rlim_max};
            setrlimit(resource, &none);
            EXPECT_FALSE(RunShellCommand(":", output));
            setrlimit(resource, &limit);
            EXPECT_EQ(output, "Shell Failed: Failed to create " + expected);
            EXPECT_EQ(OpenDescriptors(), before);
            _exit(HasFailure() ? 1 : 0);
        };
        EXPECT_EXIT(run(), testing::ExitedWithCode(0), "") << reason;
    }
}

TEST_F(ShellRunnerTest, SignalsCutNeitherTheOutputNorTheWaitShort) {
    struct sigaction interrupt = {}, old = {};
    interrupt.sa_handler = [](int) {};  // without SA_RESTART
    sigaction(SIGUSR1, &interrupt, &old);
    std::string output;
    // Meanwhile the caller gets into its wait.
    const std::string interrupts =
        "for i in 1 2 3 4 5; do ls / >/dev/null; kill -USR1 $PPID; done; ";
    EXPECT_TRUE(RunShellCommand(interrupts + "echo end; exec >&- 2>&-; " + interrupts, output));
    sigaction(SIGUSR1, &old, nullptr);
    EXPECT_EQ(output, "end\n");
}

TEST_F(ShellRunnerTest, SignalsHeldArriveInTheWaitsAndNotInTheChild) {
    static int ends[2];
    const auto run = [] {
        // A program, since a shell may unblock the signals.
        const char* const look[] = {"grep", "-E", "Sig(Blk|Ign|Cgt)", "/proc/self/status"};
        std::string before, inside;
        EXPECT_TRUE(RunExecCommand("/bin/grep", 4, look, before));
        sigset_t held{};
        sigaddset(&held, SIGUSR1);
        (void)!pipe(ends);
        (void)signal(SIGUSR1, [](int) { (void)!write(ends[1], "answer\n", 7); });
        BlockSignalsOutsideWindows(held);
        EXPECT_TRUE(RunExecCommand("/bin/grep", 4, look, inside));
        EXPECT_EQ(inside, before);
        // Ends after an answer in the wait for its output and in the wait for its end.
        const std::string ask = "kill -USR1 $PPID; read line <&" + std::to_string(ends[0]);
        EXPECT_TRUE(RunShellCommand(ask + "; exec >&- 2>&-; " + ask, inside));
        EXPECT_TRUE(RunSystemCommand(ask));
        _exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST_F(ShellRunnerTest, OutputThatFindsNoMemoryLeavesNoDescriptorAndNoChild) {
    const std::string command = "head -c 20000 /dev/zero";
    std::string output;
    onAllocation = [] { throw std::bad_alloc(); };
    EXPECT_THROW((void)RunShellCommand(command, output), std::bad_alloc);
    onAllocation = nullptr;
}

}  // namespace
