#pragma once

namespace Monitor {

// Starts the daemon and runs it. Returns the exit code; in normal operation it never returns,
// the process ends in a signal handler or for a reboot.
int RunMonitor(int argc, char** argv);

}  // namespace Monitor
