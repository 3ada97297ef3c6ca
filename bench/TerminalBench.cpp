// terminal_bench running SECONDS | growth CHECKS | lookups
//
// Exit status: 0 all bars met, 1 one was missed, 2 nothing could be measured.
#include <cstdlib>
#include <string>

#include "bench/BenchTerminal.h"
#include "bench/Measurements.h"

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    const int amount = argc > 2 ? atoi(argv[2]) : 0;
    bool met = false;
    if (what == "running" && amount > 0) {
        met = Bench::MeasureRunningDaemon(amount);
    } else if (what == "growth" && amount > 0) {
        met = Bench::MeasureGrowth(amount);
    } else if (what == "lookups") {
        met = Bench::MeasureLookups();
    } else {
        Bench::Fail("usage: terminal_bench running SECONDS | growth CHECKS | lookups");
    }
    return met ? 0 : 1;
}
