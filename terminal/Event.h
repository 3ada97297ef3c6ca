#pragma once

#include <string>

namespace Simulator {

enum class Source { kLog, kSimulator, kKeldra, kSshd, kLed, kWatchdog, kInit };

// One thing that happened in the terminal, or that the simulator did to it.
struct Event {
    double seconds = 0;  // since the terminal was first switched on
    Source source = Source::kSimulator;
    int priority = -1;     // facility and level of a log line, -1 for everything else
    bool routine = false;  // repeats all the time; a reader can do without it
    std::string text;
};

}  // namespace Simulator
