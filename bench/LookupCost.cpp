// Compares a lookup by name, which finds nothing and so reads every process, with the plain reading
// of every stat file. The two take turns; what counts is the median of each.
//
//   lookup_cost PROCESSES...
//
// Prints, for each number of processes, "PROCESSES WARM_LOOKUP WARM_PLAIN COLD_LOOKUP COLD_PLAIN"
// in nanoseconds. Warm: one right after the other, which shows our own part best. Cold: with the
// processor's caches emptied before each. Only then can numbers of processes be compared: when
// warm, the kernel's data of few processes stays in the caches and that of many does not.
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

constexpr int kWarmRounds = 200;
constexpr int kColdRounds = 40;
constexpr size_t kLargerThanCaches = size_t{256} << 20;

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

void KeepCaches() {}

void EmptyCaches() {
    static std::vector<char> other(kLargerThanCaches);
    constexpr size_t kCacheLine = 64;
    for (size_t i = 0; i < other.size(); i += kCacheLine) {
        ++other[i];
    }
}

// Prints the two medians. False when the lookup goes wrong.
bool Compare(int processes, int rounds, void (*prepare)()) {
    std::vector<double> lookups;
    std::vector<double> plain;
    bool right = true;
    for (int i = 0; i < rounds; ++i) {
        prepare();
        lookups.push_back(Cost([&right] { right &= Monitor::FindProcessId("no_keldra") == 0; }));
        prepare();
        plain.push_back(Cost([&] { right &= ReadAllStatFiles() == processes; }));
    }
    (void)printf(" %.0f %.0f", Median(lookups), Median(plain));
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
        (void)printf("%d", processes);
        (void)fflush(stdout);
        right = right && Compare(processes, kWarmRounds, KeepCaches) &&
                Compare(processes, kColdRounds, EmptyCaches);
        (void)printf("\n");
        (void)fflush(stdout);
    }
    for (const pid_t pid : sleepers) {
        (void)kill(pid, SIGKILL);
        (void)waitpid(pid, nullptr, 0);
    }
    return right ? 0 : 1;
}
