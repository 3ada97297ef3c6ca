#include "shell/ShellRunner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"

using namespace Quenda;

namespace {

// Whatever happens, nothing may be left behind: no descriptor and no child.
class ShellRunnerTest : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_EQ(OpenDescriptors(), before_);
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    std::map<int, std::string> before_ = OpenDescriptors();
};

// Runs `body` in a child of its own and returns what it returns.
int InChild(const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(body());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(ShellRunnerTest, OutputGainsWhatTheCommandWroteAndHowItEnded) {
    const struct {
        const char* command;
        bool result;
        std::string output;
    } cases[] = {
        {"", false, ""},
        {":", true, ""},
        {"echo 1; echo 2 >&2; echo 3", true, "1\n2\n3\n"},
        {"echo only >&2", true, "only\n"},
        {"printf 'a\\000\\377b'", true,
         std::string("a\0\xff"
                     "b",
                     4)},
        {"printf part; exit 2", false, "partShell command exited with code 2\n"},
        {"exit 255", false, "Shell command exited with code 255\n"},
        {"kill -KILL $$", false, "Shell Failed: Killed by signal 9\n"},
        {"echo x; kill -TERM $$", false, "x\nShell Failed: Killed by signal 15\n"},
        {"echo $0", true, "/bin/sh\n"},
    };
    for (const auto& c : cases) {
        std::string output = "kept:";
        EXPECT_EQ(RunShellCommand(c.command, output), c.result) << c.command;
        EXPECT_EQ(output, "kept:" + c.output) << c.command;
    }
}

TEST_F(ShellRunnerTest, MegabytesOfOutputArriveWhole) {
    std::string output;
    EXPECT_TRUE(RunShellCommand("head -c 3000001 /dev/zero | tr '\\0' x", output));
    EXPECT_EQ(output.size(), 3000001U);
    EXPECT_EQ(output.find_first_not_of('x'), std::string::npos);
}

TEST_F(ShellRunnerTest, FailedExecIsExplainedInTheOutputAlone) {
    Capture capture(STDOUT_FILENO);
    printf("buffered by the caller");
    const char* const argv[] = {"name"};
    std::string output;
    EXPECT_FALSE(RunExecCommand("/nonexistent/program", 1, argv, output));
    EXPECT_EQ(output,
              "Failed to exec \"/nonexistent/program\": No such file or directory\n"
              "Shell command exited with code 1\n");
    const std::string tooLong = "exit 0 #" + std::string(200000, 'x');
    output.clear();
    EXPECT_FALSE(RunShellCommand(tooLong, output));
    EXPECT_EQ(output, "Failed to exec \"" + tooLong +
                          "\": Argument list too long\nShell command exited with code 1\n");
    EXPECT_EQ(capture.Stop(), "buffered by the caller");
}

TEST_F(ShellRunnerTest, AtMost30ArgumentsArePassed) {
    const struct {
        int count;
        const char* passed;  // beside the shell's name, its option, the command and $0
    } cases[] = {{4, "0\n"}, {29, "25\n"}, {30, "26\n"}, {31, "26\n"}, {40, "26\n"}};
    for (const auto& c : cases) {
        std::vector<const char*> argv(40, "x");
        argv[0] = "sh";
        argv[1] = "-c";
        argv[2] = "echo $#";
        std::string output;
        EXPECT_TRUE(RunExecCommand("/bin/sh", c.count, argv.data(), output));
        EXPECT_EQ(output, c.passed) << c.count;
    }
    std::string output;
    EXPECT_TRUE(RunExecCommand("/bin/true", -1, nullptr, output));
    EXPECT_EQ(output, "");
}

TEST_F(ShellRunnerTest, WithoutAPipeTheReasonReplacesTheOutput) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none = {0, limit.rlim_max};
    std::string output = "lost";
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_FALSE(RunShellCommand(":", output));
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(output, "Shell Failed: Failed to create pipe: Too many open files\n");
}

TEST_F(ShellRunnerTest, WithoutAProcessTheReasonReplacesTheOutput) {
    constexpr int kForked = 77;
    const int result = InChild([] {
        const rlimit none = {0, 0};
        // The limit does not hold for root.
        if ((geteuid() == 0 && setresuid(65534, 65534, 65534) == -1) ||
            setrlimit(RLIMIT_NPROC, &none) == -1) {
            return kForked;
        }
        const auto before = OpenDescriptors();
        std::string output = "lost";
        if (RunShellCommand(":", output)) {
            return kForked;
        }
        return output == "Shell Failed: Failed to create fork: Resource temporarily "
                         "unavailable\n" &&
                       OpenDescriptors() == before
                   ? 0
                   : 1;
    });
    if (result == kForked) {
        GTEST_SKIP() << "the number of processes cannot be limited here";
    }
    EXPECT_EQ(result, 0);
}

TEST_F(ShellRunnerTest, SignalDoesNotCutTheOutputShort) {
    struct sigaction interrupt = {}, old = {};
    interrupt.sa_handler = [](int) {};  // without SA_RESTART
    sigaction(SIGUSR1, &interrupt, &old);
    std::string output;
    EXPECT_TRUE(RunShellCommand("kill -USR1 $PPID; echo on; kill -USR1 $PPID; echo end", output));
    sigaction(SIGUSR1, &old, nullptr);
    EXPECT_EQ(output, "on\nend\n");
}

TEST_F(ShellRunnerTest, SystemCommandTellsOnlySuccess) {
    const struct {
        const char* command;
        bool result;
    } cases[] = {
        {"", false}, {"exit 0", true}, {"exit 1", false}, {"kill -9 $$", false}, {"exit 3", false}};
    for (const auto& c : cases) {
        EXPECT_EQ(RunSystemCommand(c.command), c.result) << c.command;
    }
}

TEST_F(ShellRunnerTest, InheritedDescriptorsAreClosedUpTo1023) {
    EXPECT_EQ(InChild([] {
                  dup2(STDERR_FILENO, 3);
                  dup2(STDERR_FILENO, 1023);
                  const bool above = dup2(STDERR_FILENO, 1024) == 1024;
                  CloseInheritedDescriptors();
                  for (const auto& [fd, target] : OpenDescriptors()) {
                      if (fd > STDERR_FILENO) {
                          return 1;
                      }
                  }
                  return !above || fcntl(1024, F_GETFD) != -1 ? 0 : 2;
              }),
              0);
}

}  // namespace
