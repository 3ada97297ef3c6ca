#include "bench/Growth.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "bench/BenchTerminal.h"
#include "bench/Report.h"
#include "bench/inside/QuickTime.h"

namespace Bench {

namespace {

constexpr double kPatienceSeconds = 120;  // longest time between two stops

// The daemon's resources at one moment.
struct Holdings {
    long memoryKb = 0;  // private, not backed by a file
    long descriptors = 0;
    long zombies = 0;  // children that ended and were not reaped
};

Holdings LookAt(BenchTerminal& bench, pid_t daemon) {
    Holdings holdings;
    holdings.memoryKb = bench.ProcNumber(daemon, "smaps_rollup", "\nAnonymous:");
    const std::string fds = bench.Terminal().Path("/proc/" + std::to_string(daemon) + "/fd");
    holdings.descriptors = std::distance(std::filesystem::directory_iterator(fds), {});
    for (const Terminals::Simulated::Process& process : bench.Terminal().Processes()) {
        holdings.zombies += process.parent == daemon && process.state == 'Z' ? 1 : 0;
    }
    return holdings;
}

// Waits until the daemon stops after its next checks.
void AwaitStop(BenchTerminal& bench, pid_t daemon) {
    const double deadline = bench.Terminal().Seconds() + kPatienceSeconds;
    while (bench.ReadProc(daemon, "status").find("\nState:\tT") == std::string::npos) {
        bench.Terminal().Pump(5);
        if (bench.Terminal().Seconds() > deadline) {
            Fail("the daemon does not finish its checks");
        }
    }
}

// How many times Keldra has reported a start.
long Starts(BenchTerminal& bench) {
    (void)bench.Terminal().Pump(0);
    const auto& events = bench.Terminal().Events();
    return std::count_if(events.begin(), events.end(), [](const Terminals::Event& event) {
        return event.source == Terminals::Source::kKeldra && event.text.rfind("is up", 0) == 0;
    });
}

// Lets the daemon do so many checks and compares its resources with those at the first stop.
bool MeasureRun(const char* what, BenchTerminal& bench, pid_t daemon, int checks) {
    AwaitStop(bench, daemon);
    const Holdings first = LookAt(bench, daemon);
    for (int done = kChecksBetweenStops; done < checks; done += kChecksBetweenStops) {
        (void)bench.Terminal().Signal(daemon, SIGCONT);
        AwaitStop(bench, daemon);
    }
    const Holdings last = LookAt(bench, daemon);
    const long memoryKb = last.memoryKb - first.memoryKb;
    const long descriptors = last.descriptors - first.descriptors;
    return PrintRow(memoryKb <= 0 && descriptors <= 0 && last.zombies == 0,
                    "Growth, %s, check %d to %d | %ld KB, %ld descriptors, %ld zombies | - | none",
                    what, kChecksBetweenStops, checks, memoryKb, descriptors, last.zombies);
}

// The first check finds no Keldra and starts it, and all is well from then on.
bool MeasureHealthy(int checks) {
    BenchTerminal bench("libquick_time.so");
    const pid_t daemon = bench.StartDaemon("-h " QUICK_HEARTBEAT_FILE);
    const bool kept = MeasureRun("healthy", bench, daemon, checks);
    if (Starts(bench) != 1) {
        Fail("the checks were not healthy");
    }
    return kept;
}

// The heartbeat file is missing: at every check Keldra counts as faulty, is ended and started, and
// the LED script runs. The service script does not start sshd, so it runs each time as well.
bool MeasureFailing(int checks) {
    BenchTerminal bench("libquick_time.so");
    const pid_t daemon =
        bench.StartDaemon("-h /tmp/no.heartbeat -S /bin/true -X " + std::to_string(UINT32_MAX));
    const bool kept = MeasureRun("failing", bench, daemon, checks);
    if (Starts(bench) != checks) {
        Fail("Keldra was not started at every check");
    }
    return kept;
}

}  // namespace

bool MeasureGrowth(int healthyChecks, int failingChecks) {
    (void)fprintf(stderr, "bench: %d healthy checks\n", healthyChecks);
    const bool healthy = MeasureHealthy(healthyChecks);
    (void)fprintf(stderr, "bench: %d failing checks\n", failingChecks);
    return MeasureFailing(failingChecks) && healthy;
}

}  // namespace Bench
