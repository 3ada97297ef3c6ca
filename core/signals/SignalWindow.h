#pragma once

#include <signal.h>

namespace Quenda {

// For a process whose signal handlers do real work: they log, write files and exit. So that none
// of them cuts into the log or the heap half-way, the process keeps their signals blocked except
// while it waits: in the event loop's wait, in the shell runner's, and wherever one of these
// objects lives. Does nothing before `BlockSignalsOutsideWindows`.
//
// Open a window around a single wait only: code inside it must not use the heap or the log. Windows
// nest: the signals are blocked again when the outermost one closes.
class SignalWindow {
public:
    SignalWindow();
    SignalWindow(const SignalWindow&) = delete;
    SignalWindow& operator=(const SignalWindow&) = delete;
    ~SignalWindow();

private:
    const bool isOpen_;  // false before any signal is held
    sigset_t maskAround_;
};

// Blocks the given signals outside windows, from now on, and those of earlier calls as before. Not
// for use inside a window.
void BlockSignalsOutsideWindows(const sigset_t& signals);

// The mask inside a window, for system calls that change it for themselves; null while nothing
// is blocked.
const sigset_t* SignalMaskInWindow();

// In a child between fork and exec: those signals get their default dispositions, and the mask is
// the one inside a window.
void RestoreSignalsInChild();

}  // namespace Quenda
