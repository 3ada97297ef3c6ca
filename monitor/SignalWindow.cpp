#include "monitor/SignalWindow.h"

#include "core/event/EventLoop.h"

namespace Monitor {

namespace {

bool blocking = false;
sigset_t held;           // the daemon's signals
sigset_t maskInWindow;   // the one that the daemon was started with
sigset_t maskElsewhere;  // the same and the daemon's signals

}  // namespace

void BlockSignalsOutsideWindows(const sigset_t& signals) {
    // None of these calls can fail with valid sets.
    (void)sigprocmask(SIG_BLOCK, &signals, &maskInWindow);
    (void)sigprocmask(SIG_SETMASK, nullptr, &maskElsewhere);
    held = signals;
    blocking = true;
    Quenda::EventLoop::Instance().SetWaitSignalMask(maskInWindow);
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

}  // namespace Monitor
