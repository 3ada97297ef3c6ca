#include <cstdio>
#include <iterator>
#include <sstream>

#include "bench/BenchTerminal.h"
#include "bench/Measurements.h"
#include "bench/Table.h"

namespace Bench {

namespace {

constexpr double kBar = 1.2;  // times the plain reading, and what counts as linear

// Nanoseconds of one scan of so many processes.
struct Cost {
    double lookup = 0;
    double plain = 0;
};
struct Costs {
    int processes = 0;
    Cost warm;
    Cost cold;
};

bool PrintCost(const Costs& costs) {
    const double ratio = costs.warm.lookup / costs.warm.plain;
    Row row;
    row.figure = "Lookup by name, " + std::to_string(costs.processes) + " processes";
    row.measured = Fixed(costs.warm.lookup / 1000, 0) + " µs, " + Fixed(ratio, 2) + " times";
    row.floor = Fixed(costs.warm.plain / 1000, 0) + " µs, plain reading";
    row.bar = "at most " + Fixed(kBar, 1) + " times";
    row.met = ratio <= kBar;
    Print(row);
    return row.met;
}

// How much more one process costs among many than among few.
bool PrintLinearity(const Costs& few, const Costs& many) {
    const double factor = static_cast<double>(few.processes) / many.processes;
    const double lookup = many.cold.lookup / few.cold.lookup * factor;
    const double plain = many.cold.plain / few.cold.plain * factor;
    Row row;
    row.figure = "Its cost for each process, " + std::to_string(many.processes) + " beside " +
                 std::to_string(few.processes) + ", caches emptied";
    row.measured = Fixed(lookup, 2) + " times";
    row.floor = Fixed(plain, 2) + " times, plain reading";
    row.bar = "linear: at most " + Fixed(kBar, 1) + " times";
    row.met = lookup <= kBar;
    Print(row);
    return row.met;
}

}  // namespace

bool MeasureLookups() {
    BenchTerminal bench;
    std::istringstream output(bench.Run("lookup_cost", {"100", "500", "2000"}));
    Costs all[3];
    bool met = true;
    for (Costs& costs : all) {
        if (!(output >> costs.processes >> costs.warm.lookup >> costs.warm.plain >>
              costs.cold.lookup >> costs.cold.plain)) {
            Fail("lookup_cost has nothing to say");
        }
        met = PrintCost(costs) && met;
    }
    return PrintLinearity(all[0], *std::rbegin(all)) && met;
}

}  // namespace Bench
