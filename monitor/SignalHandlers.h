#pragma once

namespace Monitor {

// Call before the daemon detaches itself. A status request that comes too soon goes unanswered, but
// does not end the daemon. Children can be waited for, and no signal stays blocked in the daemon or
// in the programs that it starts, even if the starter ignored SIGCHLD or blocked signals. A write
// past a file-size limit fails (EFBIG) instead of ending the daemon. A detached daemon has no
// terminal that could hang up, so it survives SIGHUP.
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
