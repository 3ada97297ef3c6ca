#pragma once

#include <signal.h>

namespace Quenda {

// For a process whose signal handlers do real work: they log, write files and exit. So that none
// of them cuts into the log or the heap half-way, the process keeps their signals blocked except
// while it waits: in the event loop's wait, in the shell runner's, and wherever one of these
// objects lives. Does nothing before `BlockSignalsOutsideWindows`.
//
// A window stands around a single wait: code inside it keeps away from the heap and the log.
class SignalWindow {
public:
    SignalWindow();
    SignalWindow(const SignalWindow&) = delete;
    SignalWindow& operator=(const SignalWindow&) = delete;
    ~SignalWindow();
};

// Blocks the given signals outside windows, from now on.
void BlockSignalsOutsideWindows(const sigset_t& signals);

// The mask inside a window, for system calls that change it for themselves; null while nothing
// is blocked.
const sigset_t* SignalMaskInWindow();

// In a child between fork and exec: those signals get their default dispositions, and the mask is
// the one that the process itself was started with.
void RestoreSignalsInChild();

}  // namespace Quenda
