#pragma once

#include <string>
#include <vector>

#include "demo/Printer.h"
#include "demo/Story.h"

namespace Demo {

// The story's results, as a table; what was expected is left out where the terminal is too narrow
// for it. A heartbeat period is given in seconds.
void PrintTable(const Printer& printer, const std::vector<Situation>& situations, unsigned period);

// The same for a program: a heading, then one line per situation, separated by tabs. False when
// the file cannot be written.
bool WriteTimes(const std::string& path, const std::vector<Situation>& situations, unsigned period);

}  // namespace Demo
