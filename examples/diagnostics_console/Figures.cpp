#include "examples/diagnostics_console/Figures.h"

#include <unistd.h>

#include <cstdio>

#include "core/timer/TimeKeeper.h"

using Quenda::TimeKeeper;
using Quenda::ValueDefinition;

namespace {

constexpr unsigned int kPeriodMs = 100;
constexpr unsigned int kRateMs = 1000;  // the rate is worked out over at least this long

// From the second number in /proc/self/statm (proc(5)), in pages; 0 when it cannot be read.
double ResidentKb() {
    double pages = 0;
    FILE* const file = std::fopen("/proc/self/statm", "re");
    if (file != nullptr) {
        if (std::fscanf(file, "%*s %lf", &pages) != 1) {
            pages = 0;
        }
        (void)std::fclose(file);  // nothing was written
    }
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

}  // namespace

Figures::Figures()
    : values_({ValueDefinition::UInt("resident_kb", 0),
               ValueDefinition::Double("checks_per_second", 0),
               ValueDefinition::UInt("timers", 0)}),
      rateSinceMs_(static_cast<unsigned int>(Quenda::MonotonicMs())) {
    values_.EnableHistory(true);
    timer_.Start(kPeriodMs, kPeriodMs);
    Update(TimeKeeper::Instance().ActiveCount());
}

void Figures::Command(Quenda::Writable* out, int argc, const char* const* argv) {
    values_.Command(out, argc, argv);
}

void Figures::OnTimeout(unsigned int nowMs, void* /*userData*/) {
    ++checks_;
    // The difference is right also when the 32-bit time has wrapped around.
    const unsigned int passedMs = nowMs - rateSinceMs_;
    if (passedMs >= kRateMs) {
        values_.Find("checks_per_second")->SetFromNumber(checks_ * 1000.0 / passedMs);
        rateSinceMs_ = nowMs;
        checks_ = 0;
    }
    // The timer that is just firing is not among those that wait.
    Update(TimeKeeper::Instance().ActiveCount() + 1);
}

void Figures::Update(size_t timers) {
    values_.Find("resident_kb")->SetFromNumber(ResidentKb());
    values_.Find("timers")->SetFromNumber(static_cast<double>(timers));
}
