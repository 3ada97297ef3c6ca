#include "monitor/SignalWindow.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Monitor {

namespace {

volatile sig_atomic_t caught = 0;
void Catch(int /*signal*/) {
    caught = caught + 1;
}

bool IsBlocked(int signal) {
    sigset_t mask;
    sigprocmask(SIG_SETMASK, nullptr, &mask);
    return sigismember(&mask, signal) == 1;
}

TEST(SignalWindowTest, SignalsWaitForAWindowAndChildrenGetTheStartersBack) {
    // The process's mask changes for good, so this runs in a child; its exit code is the step that
    // failed.
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGUSR1, Catch);
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGUSR1);
        BlockSignalsOutsideWindows(set);
        raise(SIGUSR1);
        if (caught != 0 || !IsBlocked(SIGUSR1)) {
            _exit(1);
        }
        {
            const SignalWindow window;
            if (caught != 1 || IsBlocked(SIGUSR1)) {
                _exit(2);
            }
        }
        if (!IsBlocked(SIGUSR1)) {
            _exit(3);
        }
        RestoreSignalsInChild();
        raise(SIGUSR1);  // ends it
        _exit(4);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGUSR1) << status;
}

}  // namespace

}  // namespace Monitor
