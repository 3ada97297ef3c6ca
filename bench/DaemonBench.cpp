// daemon_bench running SECONDS | growth HEALTHY_CHECKS FAILING_CHECKS
//
// Exit status: 0 all promises kept, 1 one was broken, 2 nothing could be measured.
#include <cstdlib>
#include <string>

#include "bench/Growth.h"
#include "bench/Report.h"
#include "bench/RunningDaemon.h"

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    if (what == "running" && argc == 3) {
        return Bench::MeasureRunningDaemon(atoi(argv[2])) ? 0 : 1;
    }
    if (what == "growth" && argc == 4) {
        return Bench::MeasureGrowth(atoi(argv[2]), atoi(argv[3])) ? 0 : 1;
    }
    Bench::Fail("usage: daemon_bench running SECONDS | growth HEALTHY_CHECKS FAILING_CHECKS");
}
