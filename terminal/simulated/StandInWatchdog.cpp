#include "terminal/simulated/StandInWatchdog.h"

namespace Terminals::Simulated {
namespace {

constexpr unsigned kCountdownLines = 6;

// The byte is the lowest one of the count for that bite time, at 3.125 MHz.
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
    // The library writes control-all twice for one start; the second write is ignored.
    if (file != "control-all" || chosenSeconds_ == 0) {
        return "";
    }
    biteSeconds_ = chosenSeconds_;
    chosenSeconds_ = 0;
    linesLeft_ = kCountdownLines;
    nextLine_ = now + static_cast<double>(biteSeconds_) / kCountdownLines;
    return "armed with " + std::to_string(biteSeconds_) + " s";
}

std::string StandInWatchdog::Tick(double now) {
    if (now < nextLine_) {
        return "";
    }
    --linesLeft_;
    nextLine_ = linesLeft_ > 0 ? nextLine_ + static_cast<double>(biteSeconds_) / kCountdownLines
                               : std::numeric_limits<double>::infinity();
    return linesLeft_ > 0
               ? "bites in " + std::to_string(linesLeft_ * biteSeconds_ / kCountdownLines) + " s"
               : "BITES: the terminal reboots";
}

}  // namespace Terminals::Simulated
