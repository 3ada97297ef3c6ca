#pragma once

namespace Monitor {

// Does what the command line asks for. A daemon normally does not return from here: its process
// ends in a signal handler or before a reboot. Returns the exit status.
int RunMonitor(int argc, char** argv);

}  // namespace Monitor
