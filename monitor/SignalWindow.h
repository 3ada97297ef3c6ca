#pragma once

#include <signal.h>

namespace Monitor {

// The daemon's signal handlers do real work: they log, write files and exit. So that none of them
// cuts into the log or the heap half-way, the daemon keeps their signals blocked except while it
// waits: in the event loop's wait, and wherever one of these objects lives.
//
// A window is for waiting: code inside it keeps away from the heap and the log.
class SignalWindow {
public:
    SignalWindow();
    SignalWindow(const SignalWindow&) = delete;
    SignalWindow& operator=(const SignalWindow&) = delete;
    ~SignalWindow();
};

// Blocks the given signals outside windows and outside the event loop's wait, from now on.
void BlockSignalsOutsideWindows(const sigset_t& signals);

// In a child between fork and exec: those signals get their default dispositions, and the mask is
// the one that the daemon was started with, as it is in a child forked inside a window.
void RestoreSignalsInChild();

}  // namespace Monitor
