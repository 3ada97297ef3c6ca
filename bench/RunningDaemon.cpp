#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "bench/BenchTerminal.h"
#include "bench/Measurements.h"
#include "bench/SystemCalls.h"
#include "bench/Table.h"

namespace Bench {

namespace {

using Simulator::SimulatedTerminal;
using Simulator::Source;

constexpr double kCpuBar = 1.25;    // times the floor
constexpr long kMemoryBarKb = 250;  // above the floor
constexpr int kPatienceSeconds = 30;
// The cost of the same check differs by a third from one start of the programs to the next.
constexpr int kStarts = 4;
constexpr double kSettleSeconds = 3;
constexpr double kBetweenChecks = 0.2;  // seconds after one check and well before the next

// Of one process, since its start.
struct Sample {
    double cpuUs = 0;  // user and system
    long wakeUps = 0;  // how often it stopped waiting

    Sample& operator+=(const Sample& other) {
        cpuUs += other.cpuUs;
        wakeUps += other.wakeUps;
        return *this;
    }
};

Sample TakeSample(const BenchTerminal& bench, pid_t pid) {
    Sample sample;
    sample.cpuUs = strtod(bench.ReadProc(pid, "schedstat").c_str(), nullptr) / 1000;
    sample.wakeUps = NumberAfter(bench.ReadProc(pid, "status"), "\nvoluntary_ctxt_switches:");
    return sample;
}

void Wait(BenchTerminal& bench, double seconds) {
    SimulatedTerminal& terminal = bench.Terminal();
    for (double end = terminal.Seconds() + seconds; terminal.Seconds() < end;) {
        terminal.Pump(static_cast<int>((end - terminal.Seconds()) * 1000) + 1);
    }
}

void WaitForCheck(BenchTerminal& bench, pid_t daemon) {
    const long before = TakeSample(bench, daemon).wakeUps;
    while (TakeSample(bench, daemon).wakeUps == before) {
        (void)usleep(5000);
    }
}

// The daemon's own count, from its status report: every timer that expired was a check.
long Checks(BenchTerminal& bench, pid_t daemon) {
    const std::string path = bench.Terminal().Path(Simulator::kStatusFile);
    (void)unlink(path.c_str());
    (void)bench.Terminal().Signal(daemon, SIGUSR1);
    Wait(bench, kBetweenChecks);
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    const std::string report = text.str();
    const size_t end = report.find(" Timers Expired\n");
    if (end == std::string::npos) {
        Fail("the daemon does not report its status");
    }
    return NumberAfter(report.substr(report.rfind('\n', end), end), "\n");
}

// What both have spent in the same interval.
struct Interval {
    Sample daemon;
    Sample floor;
    long checks = 0;  // by the daemon
};

Sample Difference(const Sample& end, const Sample& begin) {
    return {end.cpuUs - begin.cpuUs, end.wakeUps - begin.wakeUps};
}

// Begins and ends between two checks. The status requests lie outside, and the first one a whole
// check earlier: the wait that it cuts short is not like the others.
Interval Measure(BenchTerminal& bench, pid_t daemon, pid_t floor, int seconds) {
    WaitForCheck(bench, daemon);
    const long checks = Checks(bench, daemon) + 1;
    WaitForCheck(bench, daemon);
    Wait(bench, kBetweenChecks);
    const Sample daemonBegin = TakeSample(bench, daemon);
    const Sample floorBegin = TakeSample(bench, floor);
    Wait(bench, seconds);
    Interval interval;
    interval.daemon = Difference(TakeSample(bench, daemon), daemonBegin);
    interval.floor = Difference(TakeSample(bench, floor), floorBegin);
    interval.checks = Checks(bench, daemon) - checks;
    return interval;
}

double Ratio(const Interval& interval) {
    // The floor waits once for each of its checks.
    return interval.daemon.cpuUs / static_cast<double>(interval.checks) /
           (interval.floor.cpuUs / static_cast<double>(interval.floor.wakeUps));
}

Interval Sum(const std::vector<Interval>& intervals) {
    Interval sum;
    for (const Interval& interval : intervals) {
        sum.daemon += interval.daemon;
        sum.floor += interval.floor;
        sum.checks += interval.checks;
    }
    return sum;
}

bool PrintCpu(const std::vector<Interval>& intervals) {
    const Interval sum = Sum(intervals);
    const double ratio = Ratio(sum);
    const auto [least, most] = std::minmax_element(
        intervals.begin(), intervals.end(),
        [](const Interval& a, const Interval& b) { return Ratio(a) < Ratio(b); });
    Row row;
    row.figure = "CPU of one check, mean of " + std::to_string(sum.checks) + " in " +
                 std::to_string(intervals.size()) + " starts";
    row.measured = Fixed(sum.daemon.cpuUs / static_cast<double>(sum.checks), 1) + " µs, " +
                   Fixed(ratio, 2) + " times (" + Fixed(Ratio(*least), 2) + " to " +
                   Fixed(Ratio(*most), 2) + ")";
    row.floor = Fixed(sum.floor.cpuUs / static_cast<double>(sum.floor.wakeUps), 1) +
                " µs, a C program's, mean of " + std::to_string(sum.floor.wakeUps);
    row.bar = "at most " + Fixed(kCpuBar, 2) + " times";
    row.met = ratio <= kCpuBar;
    Print(row);
    return row.met;
}

bool PrintWakeUps(const Interval& interval) {
    Row row;
    row.figure = "Wake-ups while nothing happens";
    row.measured = std::to_string(interval.daemon.wakeUps);
    row.floor = std::to_string(interval.checks) + " heartbeats";
    row.bar = "one per heartbeat";
    row.met = interval.daemon.wakeUps == interval.checks;
    Print(row);
    return row.met;
}

bool PrintMemory(const char* what, long daemonKb, long idleKb) {
    Row row;
    row.figure = what;
    row.measured =
        std::to_string(daemonKb) + " KB, " + std::to_string(daemonKb - idleKb) + " KB more";
    row.floor = std::to_string(idleKb) + " KB, a C++ program that waits";
    row.bar = "at most " + std::to_string(kMemoryBarKb) + " KB more";
    row.met = daemonKb - idleKb <= kMemoryBarKb;
    Print(row);
    return row.met;
}

bool CompareMemory(const BenchTerminal& bench, pid_t daemon, pid_t idle) {
    const std::string daemonMap = bench.ReadProc(daemon, "smaps_rollup");
    const std::string idleMap = bench.ReadProc(idle, "smaps_rollup");
    const auto uss = [](const std::string& map) {
        return NumberAfter(map, "Private_Clean:") + NumberAfter(map, "Private_Dirty:");
    };
    const bool ussMet = PrintMemory("Memory of its own (USS)", uss(daemonMap), uss(idleMap));
    return PrintMemory("Memory with its share (PSS)", NumberAfter(daemonMap, "\nPss:"),
                       NumberAfter(idleMap, "\nPss:")) &&
           ussMet;
}

// The floor is one only when it does what the daemon does.
bool CompareSystemCalls(BenchTerminal& bench, pid_t daemon, pid_t floor) {
    const auto ofDaemon = TraceOneCheck(bench, daemon);
    const auto ofFloor = TraceOneCheck(bench, floor);
    Row row;
    row.figure = "System calls of one check";
    row.measured = std::to_string(ofDaemon.size()) + " and the wait";
    row.floor = std::to_string(ofFloor.size()) + " and the wait";
    row.bar = "the same, in the same order";
    row.met = !ofDaemon.empty() && ofDaemon == ofFloor;
    if (ofDaemon.empty() || ofFloor.empty()) {
        row.measured = "not traced";
    }
    Print(row);
    for (size_t i = 0; !row.met && i < std::max(ofDaemon.size(), ofFloor.size()); ++i) {
        (void)fprintf(stderr, "%-60s %s\n", i < ofDaemon.size() ? ofDaemon[i].c_str() : "-",
                      i < ofFloor.size() ? ofFloor[i].c_str() : "-");
    }
    return row.met;
}

struct Pids {
    pid_t daemon;
    pid_t floor;
    pid_t idle;
};

Pids StartSideBySide(BenchTerminal& bench) {
    if (bench.Terminal().StartMonitor({"-t", "1"}).status != 0 ||
        !bench.Terminal().Await(Source::kLog, "Keldra started responding", kPatienceSeconds)) {
        Fail("the daemon does not bring Keldra up");
    }
    const pid_t daemon = bench.Pid("keldra_monitor");
    bench.Start("idle_program", {});
    // Half a period apart, so that neither finds the caches that the other has warmed.
    WaitForCheck(bench, daemon);
    Wait(bench, 0.5);
    bench.Start("floor_check", {Simulator::kHeartbeatFile, std::to_string(bench.Pid("keldra")),
                                std::to_string(bench.Pid("sshd"))});
    Wait(bench, kSettleSeconds);
    return {daemon, bench.Pid("floor_check"), bench.Pid("idle_program")};
}

}  // namespace

bool MeasureRunningDaemon(int seconds) {
    std::vector<Interval> intervals;
    while (true) {
        BenchTerminal bench;
        const Pids pids = StartSideBySide(bench);
        intervals.push_back(Measure(bench, pids.daemon, pids.floor, seconds / kStarts));
        if (intervals.size() < size_t{kStarts}) {
            continue;
        }
        const bool cpuMet = PrintCpu(intervals);
        const bool wakeUpsMet = PrintWakeUps(Sum(intervals));
        const bool memoryMet = CompareMemory(bench, pids.daemon, pids.idle);
        return CompareSystemCalls(bench, pids.daemon, pids.floor) && cpuMet && wakeUpsMet &&
               memoryMet;
    }
}

}  // namespace Bench
