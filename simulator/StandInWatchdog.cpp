#include "simulator/StandInWatchdog.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Simulator {
namespace {

constexpr unsigned kCountdownLines = 6;

// The lowest byte of each bite time's count at 3.125 MHz.
unsigned SecondsOfFirstCounter(const std::string& text) {
    if (text == "0xf0") {
        return 30;
    }
    if (text == "0xe0") {
        return 60;
    }
    return text == "0x60" ? 300 : 0;
}

}  // namespace

std::string StandInWatchdog::Write(const std::string& file, const std::string& text, double now) {
    if (file == "intial-cnt0") {
        chosenSeconds_ = SecondsOfFirstCounter(text);
        return chosenSeconds_ != 0 ? "" : "no bite time begins with the byte " + text;
    }
    if (file != "control-all" || chosenSeconds_ == 0) {
        return "";
    }
    // The board is started twice in a row; the first one counts.
    biteSeconds_ = chosenSeconds_;
    chosenSeconds_ = 0;
    Arm(now);
    return "armed with " + std::to_string(biteSeconds_) + " s";
}

void StandInWatchdog::Arm(double now) {
    armed_ = true;
    biteAt_ = now + biteSeconds_;
    nextLine_ = now + static_cast<double>(biteSeconds_) / kCountdownLines;
}

std::string StandInWatchdog::Tick(double now) {
    if (!armed_ || now < nextLine_ || now >= biteAt_) {
        return "";
    }
    nextLine_ += static_cast<double>(biteSeconds_) / kCountdownLines;
    return "bites in " + std::to_string(std::lround(biteAt_ - now)) + " s";
}

double StandInWatchdog::NextEvent() const {
    return armed_ ? std::min(nextLine_, biteAt_) : std::numeric_limits<double>::infinity();
}

}  // namespace Simulator
