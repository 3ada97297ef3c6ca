#include "bench/RunningDaemon.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "bench/BenchTerminal.h"
#include "bench/Report.h"
#include "bench/SystemCalls.h"

namespace Bench {

namespace {

using Terminals::Source;

constexpr double kCpuBar = 1.25;     // times the C program
constexpr double kWakeUpsBar = 1.5;  // for each check
constexpr long kMemoryBarKb = 250;   // above the idle program
constexpr double kPatienceSeconds = 30;
constexpr double kHalfPeriod = 0.5;  // seconds
// From one start of the programs to the next, the cost of a check differs by a third.
constexpr int kStarts = 7;
// Writes to arm the watchdog; a healthy check has no others.
constexpr long kWritesPerCheck = 7;

// The kernel's counts for one process.
struct Usage {
    double cpuUs = 0;  // user and system
    long wakeUps = 0;  // how often it stopped waiting
    long checks = 0;

    double CpuOfACheck() const { return cpuUs / static_cast<double>(checks); }
};

Usage UsageSinceStart(const BenchTerminal& bench, pid_t pid) {
    Usage usage;
    usage.cpuUs = strtod(bench.ReadProc(pid, "schedstat").c_str(), nullptr) / 1000;
    usage.wakeUps = bench.ProcNumber(pid, "status", "\nvoluntary_ctxt_switches:");
    usage.checks = bench.ProcNumber(pid, "io", "syscw:") / kWritesPerCheck;
    return usage;
}

Usage operator-(const Usage& end, const Usage& begin) {
    return {end.cpuUs - begin.cpuUs, end.wakeUps - begin.wakeUps, end.checks - begin.checks};
}

// One start of the daemon and of the two programs that it is compared with.
struct Start {
    BenchTerminal bench{"libopen_redirect.so"};
    pid_t daemon = 0;
    pid_t floor = 0;
    pid_t idle = 0;
};

std::string StatFile(const BenchTerminal& bench, const std::string& process) {
    return "/proc/" + std::to_string(bench.Pid(process)) + "/stat";
}

void StartSideBySide(Start& start) {
    BenchTerminal& bench = start.bench;
    start.daemon = bench.StartDaemon("-t 1");
    if (!bench.Terminal().Await(Source::kLog, "Keldra started responding", kPatienceSeconds)) {
        Fail("the daemon does not bring Keldra up");
    }
    start.idle = bench.Start("idle_program", {});
    // Half a period apart, so that neither profits from caches that the other has filled.
    const long wakeUps = UsageSinceStart(bench, start.daemon).wakeUps;
    while (UsageSinceStart(bench, start.daemon).wakeUps == wakeUps) {
        (void)usleep(5000);
    }
    bench.Wait(kHalfPeriod);
    start.floor = bench.Start("floor_check", {Terminals::kHeartbeatFile, StatFile(bench, "keldra"),
                                              StatFile(bench, "sshd")});
    bench.Wait(2);
}

// The use of both in the same seconds.
struct Comparison {
    Usage daemon;
    Usage floor;
};

Comparison Watch(Start& start, double seconds) {
    const Usage daemon = UsageSinceStart(start.bench, start.daemon);
    const Usage floor = UsageSinceStart(start.bench, start.floor);
    start.bench.Wait(seconds);
    const Comparison comparison = {UsageSinceStart(start.bench, start.daemon) - daemon,
                                   UsageSinceStart(start.bench, start.floor) - floor};
    if (comparison.daemon.checks == 0 || comparison.floor.checks == 0) {
        Fail("the watchdog is not armed");
    }
    return comparison;
}

// One value of each start, in ascending order.
template <typename Value>
std::vector<double> Sorted(const std::vector<Comparison>& starts, const Value& value) {
    std::vector<double> values;
    std::transform(starts.begin(), starts.end(), std::back_inserter(values), value);
    std::sort(values.begin(), values.end());
    return values;
}

// Other work on the machine can make a single start look bad, so the median counts.
bool PrintCpu(const std::vector<Comparison>& starts) {
    const size_t middle = starts.size() / 2;
    const auto daemon = Sorted(starts, [](const auto& s) { return s.daemon.CpuOfACheck(); });
    const auto floor = Sorted(starts, [](const auto& s) { return s.floor.CpuOfACheck(); });
    const auto ratio = Sorted(
        starts, [](const auto& s) { return s.daemon.CpuOfACheck() / s.floor.CpuOfACheck(); });
    return PrintRow(ratio[middle] <= kCpuBar,
                    "CPU of one check, median of %zu starts | %.0f µs, %.2f times (%.2f to %.2f) | "
                    "%.0f µs, the same system calls in C | at most %.2f times",
                    starts.size(), daemon[middle], ratio[middle], ratio.front(), ratio.back(),
                    floor[middle], kCpuBar);
}

bool PrintWakeUps(const std::vector<Comparison>& starts) {
    long wakeUps = 0;
    long checks = 0;
    for (const Comparison& start : starts) {
        wakeUps += start.daemon.wakeUps;
        checks += start.daemon.checks;
    }
    return PrintRow(static_cast<double>(wakeUps) <= kWakeUpsBar * static_cast<double>(checks),
                    "Wake-ups | %ld | %ld checks | at most %.1f for each check", wakeUps, checks,
                    kWakeUpsBar);
}

long OwnKb(const BenchTerminal& bench, pid_t pid) {
    return bench.ProcNumber(pid, "smaps_rollup", "Private_Clean:") +
           bench.ProcNumber(pid, "smaps_rollup", "Private_Dirty:");
}

bool PrintMemory(const Start& start) {
    const long daemon = OwnKb(start.bench, start.daemon);
    const long idle = OwnKb(start.bench, start.idle);
    return PrintRow(daemon - idle <= kMemoryBarKb,
                    "Own memory | %ld KB, %ld KB more | %ld KB, a C++ program that waits | "
                    "at most %ld KB more",
                    daemon, daemon - idle, idle, kMemoryBarKb);
}

// The comparison is fair only while the C program makes the daemon's calls.
bool PrintSystemCalls(Start& start) {
    const auto daemon = TraceOneCheck(start.bench, start.daemon);
    const auto floor = TraceOneCheck(start.bench, start.floor);
    const bool same = daemon == floor;
    for (size_t i = 0; !same && i < std::max(daemon.size(), floor.size()); ++i) {
        (void)fprintf(stderr, "%-72s %s\n", i < daemon.size() ? daemon[i].c_str() : "-",
                      i < floor.size() ? floor[i].c_str() : "-");
    }
    return PrintRow(same,
                    "System calls of one check | %zu and the wait | %zu and the wait, in C | the "
                    "same, in the same order",
                    daemon.size(), floor.size());
}

}  // namespace

bool MeasureRunningDaemon(int seconds) {
    std::vector<Comparison> starts;
    while (true) {
        (void)fprintf(stderr, "bench: start %zu of %d\n", starts.size() + 1, kStarts);
        Start start;
        StartSideBySide(start);
        starts.push_back(Watch(start, static_cast<double>(seconds) / kStarts));
        if (starts.size() == size_t{kStarts}) {
            bool kept = PrintCpu(starts);
            kept = PrintWakeUps(starts) && kept;
            kept = PrintMemory(start) && kept;
            return PrintSystemCalls(start) && kept;
        }
    }
}

}  // namespace Bench
