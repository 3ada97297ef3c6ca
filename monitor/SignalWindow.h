#pragma once

#include <signal.h>

namespace Monitor {

// The daemon's signal handlers do real work: they log, write files and exit. So that none of them
// cuts into the log or the heap half-way, the daemon keeps their signals blocked except while it
// waits: in the event loop's wait, and wherever one of these objects lives.
//
// While a window is open, use neither the heap nor the log. A child is forked inside a window: it
// inherits the signal mask, and Keldra and sshd are to start with the one that the daemon itself
// was given.
class SignalWindow {
public:
    SignalWindow();
    SignalWindow(const SignalWindow&) = delete;
    SignalWindow& operator=(const SignalWindow&) = delete;
    ~SignalWindow();
};

// Blocks the given signals outside windows and outside the event loop's wait, from now on.
void BlockSignalsOutsideWindows(const sigset_t& signals);

}  // namespace Monitor
