#include <cstdio>

#include "bench/BenchTerminal.h"
#include "bench/Measurements.h"
#include "bench/Table.h"

namespace Bench {

namespace {

constexpr int kEarly = 1000;

std::string WithThousands(int number) {
    std::string text = std::to_string(number);
    for (int at = static_cast<int>(text.size()) - 3; at > 0; at -= 3) {
        text.insert(static_cast<size_t>(at), ",");
    }
    return text;
}

bool MeasureRoad(BenchTerminal& bench, const char* road, int checks) {
    const std::string output =
        bench.Run("check_loop", {road, std::to_string(kEarly), std::to_string(checks)});
    const long heap = NumberAfter(output, "late heap") - NumberAfter(output, "early heap");
    const long resident =
        NumberAfter(output, "late resident") - NumberAfter(output, "early resident");
    Row row;
    row.figure = std::string("Growth up to check ") + WithThousands(checks) + ", " + road;
    row.measured =
        "heap " + std::to_string(heap) + " bytes, resident " + std::to_string(resident) + " KB";
    row.floor = "check " + WithThousands(kEarly);
    row.bar = "none";
    row.met = heap <= 0 && resident <= 0;
    Print(row);
    return row.met;
}

}  // namespace

bool MeasureGrowth(int checks) {
    BenchTerminal bench;
    Simulator::SimulatedTerminal& terminal = bench.Terminal();
    (void)terminal.Run({Simulator::kKeldraProgram, "-cp", "23"});
    (void)terminal.Run({"/usr/sbin/service", "sshd", "start"});
    (void)bench.Pid("keldra");
    (void)bench.Pid("sshd");
    const bool success = MeasureRoad(bench, "success", checks);
    return MeasureRoad(bench, "failure", checks) && success;
}

}  // namespace Bench
