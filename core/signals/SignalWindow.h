#pragma once

#include <signal.h>

namespace Quenda {

// For a process whose signal handlers log, write files and exit. A handler must not interrupt the
// log or the heap. So the process keeps the signals blocked, except while it waits: in the event
// loop's wait, in the shell runner's waits, and while an object of this class exists. Has no effect
// before `BlockSignalsOutsideWindows`.
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

// Blocks the given signals outside windows from now on, in addition to those of earlier calls. Do
// not call it inside a window.
void BlockSignalsOutsideWindows(const sigset_t& signals);

// The mask inside a window, for system calls that take one; null while nothing is blocked.
const sigset_t* SignalMaskInWindow();

// For a child between fork and exec: gives those signals their default dispositions and sets the
// mask that applies inside a window.
void RestoreSignalsInChild();

}  // namespace Quenda
