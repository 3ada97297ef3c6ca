#pragma once

namespace Monitor {

// Before the daemon detaches itself: a status request that comes too soon goes unanswered, but
// does not end it, children can be waited for and signals arrive, whatever the starter ignored or
// blocked. A daemon that detaches has no terminal that could hang up: to it SIGHUP means nothing.
void PrepareSignals(bool detached);

// From now on the daemon's signals arrive only while it waits (SignalWindow).
void HoldSignals();

// The daemon's handlers: SIGUSR1 updates the status file; SIGINT prints the status to standard
// error and shuts down; SIGTSTP, SIGQUIT and SIGTERM shut down. The watchdog stays armed: unless a
// new monitor takes over in time, the terminal reboots.
void InstallSignalHandlers();

// The status query's: SIGINT ends it with exit code 1. SIGUSR1 is ignored, since a second query may
// take this one for the monitor.
void InstallQuerySignalHandler();

}  // namespace Monitor
