#pragma once

#include <string>

#include "simulator/TerminalLayout.h"

namespace Simulator {

// Makes it a terminal whose daemon was built for the board (preset "powerpc") in this build
// directory: the daemon runs in an emulator, everything else stays the workstation's. Keldra then
// counts in the board's byte order.
void UseTargetDaemon(const std::string& buildDirectory, TerminalOptions* options);

}  // namespace Simulator
