// Counts a process's system calls: count_system_calls PID SECONDS. Prints their number.
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

volatile std::sig_atomic_t over = 0;

// Until the alarm rings. Each call stops the process twice, before and after.
long CountStops(pid_t pid) {
    long stops = 0;
    while (over == 0) {
        int status = 0;
        if (waitpid(pid, &status, 0) != pid || !WIFSTOPPED(status)) {
            continue;
        }
        const bool isCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
        const bool isSignal = !isCall && status >> 16 == 0;
        stops += isCall ? 1 : 0;
        (void)ptrace(PTRACE_SYSCALL, pid, nullptr, isSignal ? WSTOPSIG(status) : 0);
    }
    return stops;
}

}  // namespace

int main(int argc, char** argv) {
    const auto pid = static_cast<pid_t>(argc == 3 ? strtol(argv[1], nullptr, 10) : 0);
    if (pid <= 0 || ptrace(PTRACE_SEIZE, pid, nullptr, PTRACE_O_TRACESYSGOOD) != 0 ||
        ptrace(PTRACE_INTERRUPT, pid, nullptr, nullptr) != 0) {
        perror("count_system_calls PID SECONDS");
        return 1;
    }
    struct sigaction ring = {};
    ring.sa_handler = [](int) { over = 1; };
    (void)sigaction(SIGALRM, &ring, nullptr);  // without SA_RESTART: it ends the wait
    (void)alarm(static_cast<unsigned>(strtoul(argv[2], nullptr, 10)));
    printf("%ld\n", CountStops(pid) / 2);
}
