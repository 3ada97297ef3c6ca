// Stands in for the terminal's first process: takes in orphaned processes and reports how each
// ended.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <fstream>

#include "simulator/TerminalLayout.h"
#include "simulator/standins/Announce.h"

namespace {

void ReportEnd(pid_t pid) {
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(pid) + "/comm"), name);
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) {
        return;
    }
    const std::string how = WIFEXITED(status) ? "exit status " + std::to_string(WEXITSTATUS(status))
                                              : "signal " + std::to_string(WTERMSIG(status));
    Simulator::Announce("init", name + " has ended: " + how);
}

}  // namespace

int main() {
    sigset_t ended;
    sigemptyset(&ended);
    sigaddset(&ended, SIGCHLD);
    (void)sigprocmask(SIG_BLOCK, &ended, nullptr);
    (void)!write(STDERR_FILENO, Simulator::kFirstProcessRuns, strlen(Simulator::kFirstProcessRuns));
    // What the simulator still reads from is let go of.
    (void)close_range(0, ~0U, 0);
    (void)open("/dev/null", O_RDWR);
    (void)dup2(0, 1);
    (void)dup2(0, 2);
    while (true) {
        siginfo_t child = {};
        // Its name can be read only while it is not yet reaped.
        while (waitid(P_ALL, 0, &child, WEXITED | WNOWAIT | WNOHANG) == 0 && child.si_pid != 0) {
            ReportEnd(child.si_pid);
            child = {};
        }
        (void)sigwaitinfo(&ended, nullptr);
    }
}
