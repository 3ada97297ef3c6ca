#include <cstdio>
#include <iterator>
#include <sstream>

#include "bench/BenchTerminal.h"
#include "bench/Measurements.h"
#include "bench/Table.h"

namespace Bench {

namespace {

constexpr double kBar = 1.2;  // times the plain reading, and what counts as linear

// Microseconds for each process, of one lookup among so many.
struct Cost {
    int processes = 0;
    double lookupUs = 0;
    double plainUs = 0;
};

bool PrintCost(const Cost& cost) {
    const double ratio = cost.lookupUs / cost.plainUs;
    Row row;
    row.figure = "Lookup by name, " + std::to_string(cost.processes) + " processes";
    row.measured = Fixed(cost.lookupUs * cost.processes, 0) + " µs, " + Fixed(ratio, 2) + " times";
    row.floor = Fixed(cost.plainUs * cost.processes, 0) + " µs, plain reading";
    row.bar = "at most " + Fixed(kBar, 1) + " times";
    row.met = ratio <= kBar;
    Print(row);
    return row.met;
}

bool PrintLinearity(const Cost& few, const Cost& many) {
    const double growth = many.lookupUs / few.lookupUs;
    Row row;
    row.figure = "The same for each process, " + std::to_string(many.processes) + " beside " +
                 std::to_string(few.processes);
    row.measured = Fixed(growth, 2) + " times";
    row.floor = Fixed(many.plainUs / few.plainUs, 2) + " times, plain reading";
    row.bar = "linear: at most " + Fixed(kBar, 1) + " times";
    row.met = growth <= kBar;
    Print(row);
    return row.met;
}

}  // namespace

bool MeasureLookups() {
    BenchTerminal bench;
    std::istringstream output(bench.Run("lookup_cost", {"100", "500", "2000"}));
    Cost costs[3];
    bool met = true;
    for (Cost& cost : costs) {
        double lookupNs = 0;
        double plainNs = 0;
        if (!(output >> cost.processes >> lookupNs >> plainNs)) {
            Fail("lookup_cost has nothing to say");
        }
        cost.lookupUs = lookupNs / 1000 / cost.processes;
        cost.plainUs = plainNs / 1000 / cost.processes;
        met = PrintCost(cost) && met;
    }
    return PrintLinearity(costs[0], *std::rbegin(costs)) && met;
}

}  // namespace Bench
