#include "terminal/simulated/StandInWatchdog.h"

#include <map>

namespace Terminals::Simulated {
namespace {

constexpr unsigned kCountdownLines = 6;

// By the lowest byte of the count for that bite time, at 3.125 MHz.
const std::map<std::string, unsigned> kBiteSeconds = {{"0xf0", 30}, {"0xe0", 60}, {"0x60", 300}};

}  // namespace

std::string StandInWatchdog::Write(const std::string& write, double now) {
    const size_t blank = write.find(' ');
    const std::string file = write.substr(0, blank);
    if (file == "intial-cnt0") {
        const std::string byte = write.substr(blank + 1);
        const auto found = kBiteSeconds.find(byte);
        chosenSeconds_ = found != kBiteSeconds.end() ? found->second : 0;
        return chosenSeconds_ != 0 ? "" : "watchdog no bite time begins with the byte " + byte;
    }
    // The library writes control-all twice for one start; the second write is ignored.
    if (file != "control-all" || chosenSeconds_ == 0) {
        return "";
    }
    biteSeconds_ = chosenSeconds_;
    chosenSeconds_ = 0;
    linesLeft_ = kCountdownLines;
    nextLine_ = now + static_cast<double>(biteSeconds_) / kCountdownLines;
    return "watchdog armed with " + std::to_string(biteSeconds_) + " s";
}

std::string StandInWatchdog::Tick(double now) {
    if (now < nextLine_) {
        return "";
    }
    --linesLeft_;
    if (linesLeft_ == 0) {
        nextLine_ = std::numeric_limits<double>::infinity();
        return "watchdog BITES: the terminal reboots";
    }
    nextLine_ += static_cast<double>(biteSeconds_) / kCountdownLines;
    return "watchdog bites in " + std::to_string(linesLeft_ * biteSeconds_ / kCountdownLines) +
           " s";
}

}  // namespace Terminals::Simulated
