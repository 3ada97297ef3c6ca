// Compares a lookup by name, which finds nothing and so reads every process, with the plain reading
// of every stat file. The two take turns; what counts is the median of each.
//
//   lookup_cost PROCESSES...
//
// Prints, for each number of processes, "PROCESSES LOOKUP_NS PLAIN_NS".
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

#include "bench/PlainLookup.h"
#include "monitor/ProcessLookup.h"

namespace {

constexpr int kReadings = 120000;  // of stat files on each side, for each number of processes
constexpr int kFewestRounds = 60;

// A process that does nothing until it is ended.
pid_t Sleeper() {
    const pid_t pid = fork();
    if (pid == 0) {
        (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
        for (;;) {
            pause();
        }
    }
    return pid;
}

double CpuNs() {
    timespec now{};
    (void)clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

template <typename Work>
double Cost(Work work) {
    const double begin = CpuNs();
    work();
    return CpuNs() - begin;
}

double Median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// False when the lookup goes wrong.
bool Compare(int processes) {
    const int rounds = std::max(kFewestRounds, kReadings / processes);
    std::vector<double> lookups;
    std::vector<double> plain;
    bool right = true;
    for (int i = 0; i < rounds; ++i) {
        lookups.push_back(Cost([&right] { right &= Monitor::FindProcessId("no_keldra") == 0; }));
        plain.push_back(Cost([&] { right &= ReadAllStatFiles() == processes; }));
    }
    (void)printf("%d %.0f %.0f\n", processes, Median(lookups), Median(plain));
    (void)fflush(stdout);
    return right;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<pid_t> sleepers;
    bool right = argc > 1;
    for (int i = 1; i < argc && right; ++i) {
        const int processes = atoi(argv[i]);
        while (right && ReadAllStatFiles() < processes) {
            sleepers.push_back(Sleeper());
            right = sleepers.back() > 0;
        }
        right = right && Compare(processes);
    }
    for (const pid_t pid : sleepers) {
        (void)kill(pid, SIGKILL);
        (void)waitpid(pid, nullptr, 0);
    }
    return right ? 0 : 1;
}
