// core_bench timers | dispatch | options | shell
//
// Exit status: 0 all bars met, 1 one was missed, 2 nothing could be measured.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/core/CoreMeasurements.h"

namespace Bench {

void Fail(const std::string& reason) {
    (void)fprintf(stderr, "core_bench: %s\n", reason.c_str());
    exit(2);
}

}  // namespace Bench

int main(int argc, char** argv) {
    const struct {
        const char* name;
        bool (*measure)();
    } measurements[] = {{"timers", Bench::MeasureTimers},
                        {"dispatch", Bench::MeasureDispatch},
                        {"options", Bench::MeasureOptions},
                        {"shell", Bench::MeasureShell}};
    const std::string what = argc == 2 ? argv[1] : "";
    for (const auto& measurement : measurements) {
        if (what == measurement.name) {
            return measurement.measure() ? 0 : 1;
        }
    }
    Bench::Fail("usage: core_bench timers | dispatch | options | shell");
}
