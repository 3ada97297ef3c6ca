#pragma once

#include <string>
#include <vector>

#include "demo/Story.h"

namespace Demo {

// Prints the results of the scenes as a table, without the column "expected" on a narrow terminal.
// The heartbeat period is in seconds.
void PrintTable(const std::vector<Scene>& scenes, unsigned period);

// Writes the same for programs: a heading, then a line for each scene, separated by tabs. False if
// the file cannot be written.
bool WriteTimes(const std::string& path, const std::vector<Scene>& scenes, unsigned period);

}  // namespace Demo
