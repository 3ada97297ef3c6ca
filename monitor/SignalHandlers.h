#pragma once

namespace Monitor {

// From now on the daemon's signals wait until it does (SignalWindow). Called early in the start-up:
// a status request that comes too soon must not end the monitor, it is answered a moment later.
void HoldSignals();

// The daemon's handlers: SIGUSR1 updates the status file; SIGINT prints the status to standard
// error and shuts down; SIGTSTP, SIGQUIT and SIGTERM shut down. The watchdog stays armed: unless a
// new monitor takes over in time, the terminal reboots.
void InstallSignalHandlers();

// The status query's: SIGINT ends it with exit code 1. SIGUSR1 is ignored, since a second query may
// take this one for the monitor.
void InstallQuerySignalHandler();

}  // namespace Monitor
