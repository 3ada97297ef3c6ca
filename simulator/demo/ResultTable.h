#pragma once

#include <string>
#include <vector>

#include "simulator/demo/Printer.h"

namespace Simulator {

// How one situation of the story went. Times are seconds from the fault, negative when the
// situation has none.
struct Situation {
    std::string name;
    std::string expected;
    std::string seen;
    bool passed = false;
    bool skipped = false;
    double detectSeconds = -1;
    double recoverSeconds = -1;
};

// The story's results, as a table of at most 100 columns. A heartbeat period is given in seconds.
void PrintTable(const Printer& printer, const std::vector<Situation>& situations, unsigned period);

// The same for a program: a heading, then one line per situation, separated by tabs. False when
// the file cannot be written.
bool WriteTimes(const std::string& path, const std::vector<Situation>& situations, unsigned period);

}  // namespace Simulator
