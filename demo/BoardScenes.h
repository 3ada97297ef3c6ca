#pragma once

#include <vector>

#include "demo/Story.h"

namespace Demo {

// Scenes that only the board can show. Its watchdog bites `divisor` times earlier than it says, and
// the heartbeat timeout of its daemon is `period` seconds. The last scene ends on the backup
// partition.
std::vector<Scene> BoardScenes(unsigned divisor, unsigned period, double patience);

}  // namespace Demo
