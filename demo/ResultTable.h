#pragma once

#include <string>
#include <vector>

#include "demo/Printer.h"
#include "demo/Story.h"

namespace Demo {

// Prints the results of the story as a table, without the column "expected" on a narrow terminal.
// The heartbeat period is in seconds.
void PrintTable(const Printer& printer, const std::vector<Situation>& situations, unsigned period);

// Writes the same for programs: a heading, then a line for each situation, separated by tabs. False
// if the file cannot be written.
bool WriteTimes(const std::string& path, const std::vector<Situation>& situations, unsigned period);

}  // namespace Demo
