#include "simulator/SimulatedTerminal.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

class SimulatedTerminalTest : public EndToEnd {};

TEST_F(SimulatedTerminalTest, TheMachineCannotBeChangedFromInside) {
    PowerOn();
    for (const char* directory : {"/usr/bin", "/usr/lib", "/etc"}) {
        const std::string file = std::string(directory) + "/simulated_terminal_test";
        EXPECT_NE(terminal_->Run({"/bin/sh", "-c", ": >" + file}).status, 0) << file;
        EXPECT_NE(access(file.c_str(), F_OK), 0) << file;
    }
    EXPECT_EQ(terminal_->Run({"/bin/sh", "-c", ": >/tmp/simulated_terminal_test"}).status, 0);
    EXPECT_NE(access("/tmp/simulated_terminal_test", F_OK), 0);
    EXPECT_NE(access("/sys/sysopt", F_OK), 0);
}

TEST_F(SimulatedTerminalTest, EverythingInsideEndsWithASimulatorThatIsKilled) {
    // What is orphaned comes to this process, which can so wait for its end.
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    const pid_t simulator = fork();
    if (simulator == 0) {
        PowerOn();
        (void)terminal_->Run({"/bin/sh", "-c", "setsid sleep 1000 &"});
        (void)raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(simulator, &status, 0), simulator);
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    // The first process ends last, when nothing is left in its namespace.
    const pid_t first = waitpid(-1, &status, 0);
    EXPECT_GT(first, 0);
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_EQ(waitpid(-1, &status, 0), -1);
    EXPECT_EQ(errno, ECHILD);
    (void)prctl(PR_SET_CHILD_SUBREAPER, 0);
}
