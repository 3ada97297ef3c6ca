#include "monitor/SignalHandlers.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "core/log/Log.h"
#include "core/output/StdioWritable.h"
#include "core/signals/SignalWindow.h"
#include "monitor/HealthCheck.h"
#include "monitor/StatusReport.h"

namespace Monitor {

namespace {

[[noreturn]] void ShutDown(int signal) {
    Quenda::LogMessage(0, "Keldra Monitor is shutting down gracefully in response to signal %d\n",
                       signal);
    (void)ArmWatchdog(kBiteSeconds);  // logs its own failure
    (void)heartbeatReader.Stop();
    exit(0);
}

// An exception must not leave a signal handler: without memory there is no report.
void Report(void (*write)()) {
    try {
        write();
    } catch (const std::bad_alloc&) {
        Quenda::LogMessage(0, "Out of memory: this status report is given up\n");
    }
}

void OnStatusRequest(int /*signal*/) {
    const int interrupted = errno;
    Report(UpdateStatusFile);
    errno = interrupted;
}

[[noreturn]] void OnInterrupt(int signal) {
    fprintf(stderr, "\n");
    Report([] {
        Quenda::StdioWritable out(stderr);
        WriteStatusReport(&out);
    });
    ShutDown(signal);
}

[[noreturn]] void OnQueryInterrupt(int /*signal*/) {
    // Only async-signal-safe calls: the signal may have interrupted stdio or exit.
    (void)!write(STDERR_FILENO, "\n", 1);
    _exit(1);
}

struct HandledSignal {
    int number;
    void (*handler)(int);
};
constexpr HandledSignal kHandled[] = {
    {SIGUSR1, OnStatusRequest}, {SIGINT, OnInterrupt}, {SIGTSTP, ShutDown},
    {SIGQUIT, ShutDown},        {SIGTERM, ShutDown},
};

sigset_t DaemonsSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const HandledSignal& handled : kHandled) {
        sigaddset(&signals, handled.number);
    }
    return signals;
}

}  // namespace

void PrepareSignals(bool detached) {
    (void)signal(SIGUSR1, SIG_IGN);  // none of the calls can fail with these signals
    (void)signal(SIGCHLD, SIG_DFL);
    // Empty handlers, because children would inherit SIG_IGN.
    (void)signal(SIGXFSZ, [](int) {});
    (void)signal(SIGPIPE, [](int) {});  // in debug mode, the reader of the log may end first
    if (detached) {
        (void)signal(SIGHUP, [](int) {});
    }
    sigset_t none;
    sigemptyset(&none);
    (void)sigprocmask(SIG_SETMASK, &none, nullptr);
}

void HoldSignals() {
    Quenda::BlockSignalsOutsideWindows(DaemonsSignals());
}

void InstallSignalHandlers() {
    struct sigaction action {};
    // As signal(2) does: an interrupted wait for a child continues.
    action.sa_flags = SA_RESTART;
    // No handler interrupts another one.
    action.sa_mask = DaemonsSignals();
    for (const HandledSignal& handled : kHandled) {
        action.sa_handler = handled.handler;
        (void)sigaction(handled.number, &action, nullptr);  // cannot fail with these signals
    }
}

void InstallQuerySignalHandler() {
    (void)signal(SIGINT, OnQueryInterrupt);  // neither call can fail with these signals
    (void)signal(SIGUSR1, SIG_IGN);
}

}  // namespace Monitor
