#include "core/signals/SignalWindow.h"

namespace Quenda {

namespace {

bool blocking = false;
sigset_t blocked;       // outside windows
sigset_t maskInWindow;  // the process's mask before any of them was blocked

}  // namespace

void BlockSignalsOutsideWindows(const sigset_t& signals) {
    // None of these calls can fail with valid sets. Only the first call reads the mask: later ones
    // would find the signals blocked and keep them so in windows.
    (void)sigprocmask(SIG_BLOCK, &signals, blocking ? nullptr : &maskInWindow);
    (void)sigorset(&blocked, &blocked, &signals);
    blocking = true;
}

const sigset_t* SignalMaskInWindow() {
    return blocking ? &maskInWindow : nullptr;
}

void RestoreSignalsInChild() {
    if (!blocking) {
        return;
    }
    for (int signal = 1; signal < NSIG; ++signal) {
        if (sigismember(&blocked, signal) == 1) {
            (void)::signal(signal, SIG_DFL);  // cannot fail: none of them is reserved
        }
    }
    (void)sigprocmask(SIG_SETMASK, &maskInWindow, nullptr);
}

SignalWindow::SignalWindow() : isOpen_(blocking) {
    if (isOpen_) {
        (void)sigprocmask(SIG_SETMASK, &maskInWindow, &maskAround_);
    }
}

SignalWindow::~SignalWindow() {
    if (isOpen_) {
        (void)sigprocmask(SIG_SETMASK, &maskAround_, nullptr);
    }
}

}  // namespace Quenda
