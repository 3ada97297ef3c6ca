#pragma once

namespace Monitor {

// Carries out the command line. A daemon normally does not return from here: its process
// ends in a signal handler or before a reboot. Returns the exit status.
int RunMonitor(int argc, char** argv);

}  // namespace Monitor
