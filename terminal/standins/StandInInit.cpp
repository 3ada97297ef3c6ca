// Stands in for the terminal's first process: adopts orphaned processes and reports how each ended.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <fstream>

#include "terminal/TerminalLayout.h"
#include "terminal/standins/Announce.h"

namespace {

void ReportEnd(const siginfo_t& child) {
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(child.si_pid) + "/comm"), name);
    name += child.si_code == CLD_EXITED ? " has ended: exit status " : " has ended: signal ";
    // Reported before it is reaped: once a process is gone, its report has been sent.
    Announce("init", (name + std::to_string(child.si_status)).c_str());
    (void)waitpid(child.si_pid, nullptr, 0);
}

}  // namespace

// Starts the program in its arguments, if there is one.
int main(int argc, char** argv) {
    if (argc > 1 && fork() == 0) {
        (void)execv(argv[1], argv + 1);
        _exit(127);
    }
    sigset_t ended;
    sigemptyset(&ended);
    sigaddset(&ended, SIGCHLD);
    (void)sigprocmask(SIG_BLOCK, &ended, nullptr);
    (void)!write(STDERR_FILENO, Terminals::kFirstProcessRuns, strlen(Terminals::kFirstProcessRuns));
    // The simulator reads from these pipes until they are closed.
    (void)close_range(0, ~0U, 0);
    (void)open("/dev/null", O_RDWR);
    (void)dup2(0, 1);
    (void)dup2(0, 2);
    while (true) {
        siginfo_t child = {};
        // The name can be read only before the process is reaped.
        while (waitid(P_ALL, 0, &child, WEXITED | WNOWAIT | WNOHANG) == 0 && child.si_pid != 0) {
            ReportEnd(child);
            child = {};
        }
        (void)sigwaitinfo(&ended, nullptr);
    }
}
