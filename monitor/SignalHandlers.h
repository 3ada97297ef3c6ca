#pragma once

namespace Monitor {

// Call before the daemon detaches itself.
// - A status request (SIGUSR1) is ignored until its handler is installed.
// - The starter's signal state has no effect: children can be waited for even if SIGCHLD was
//   ignored, and no signal stays blocked, neither here nor in the programs that are started.
// - A write past a file-size limit fails with EFBIG, and one to a pipe without a reader with
//   EPIPE: neither ends the daemon.
// - A detached daemon has no terminal that could hang up, so it survives SIGHUP.
void PrepareSignals(bool detached);

// From now on, the daemon's signals arrive only while it waits (SignalWindow).
void HoldSignals();

// The daemon's handlers: SIGUSR1 updates the status file; SIGINT prints the status to standard
// error and shuts down; SIGTSTP, SIGQUIT and SIGTERM shut down. The watchdog stays armed: unless a
// new monitor takes over in time, the terminal reboots.
void InstallSignalHandlers();

// The status query's handlers: SIGINT ends it with exit status 1. SIGUSR1 is ignored, because a
// second query may mistake this one for the monitor.
void InstallQuerySignalHandler();

}  // namespace Monitor
