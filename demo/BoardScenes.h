#pragma once

#include <vector>

#include "demo/Story.h"

namespace Demo {

// What only a machine of its own can show of the daemon: scenes for a board whose watchdog bites
// `divisor` times sooner than it says, and whose daemon has a heartbeat timeout of `period`
// seconds. The last of them ends on the backup partition.
std::vector<Scene> BoardScenes(unsigned divisor, unsigned period, double patience);

}  // namespace Demo
