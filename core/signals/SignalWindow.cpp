#include "core/signals/SignalWindow.h"

namespace Quenda {

namespace {

bool blocking = false;
sigset_t held;           // the signals that wait for a window
sigset_t maskInWindow;   // the one that the process was started with
sigset_t maskElsewhere;  // the same and the signals held

}  // namespace

void BlockSignalsOutsideWindows(const sigset_t& signals) {
    // None of these calls can fail with valid sets.
    (void)sigprocmask(SIG_BLOCK, &signals, &maskInWindow);
    (void)sigprocmask(SIG_SETMASK, nullptr, &maskElsewhere);
    held = signals;
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
        if (sigismember(&held, signal) == 1) {
            (void)::signal(signal, SIG_DFL);  // cannot fail: none of them is reserved
        }
    }
    (void)sigprocmask(SIG_SETMASK, &maskInWindow, nullptr);
}

SignalWindow::SignalWindow() {
    if (blocking) {
        (void)sigprocmask(SIG_SETMASK, &maskInWindow, nullptr);
    }
}

SignalWindow::~SignalWindow() {
    if (blocking) {
        (void)sigprocmask(SIG_SETMASK, &maskElsewhere, nullptr);
    }
}

}  // namespace Quenda
