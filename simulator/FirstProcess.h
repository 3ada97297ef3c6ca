#pragma once

#include "simulator/TerminalLayout.h"

namespace Simulator {

// What the terminal's process 1 does: builds the root file system, binds the socket `syslog`,
// writes "ready" or the reason why not into `ready`, and from then on takes in
// orphaned processes, reporting how each ended. To be called in the namespaces' first process.
[[noreturn]] void RunFirstProcess(const TerminalOptions& options, int syslog, int ready);

}  // namespace Simulator
