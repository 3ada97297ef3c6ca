#include "monitor/SignalWindow.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/event/EventLoop.h"

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

// The process's mask changes for good, so each case runs in a child; its exit code is a step that
// failed, 0 for none.
template <typename Steps>
int InChild(Steps steps) {
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGUSR1, Catch);
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGUSR1);
        BlockSignalsOutsideWindows(set);
        _exit(steps());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

TEST(SignalWindowTest, SignalsWaitForAWindow) {
    EXPECT_EQ(InChild([] {
                  raise(SIGUSR1);
                  if (caught != 0 || !IsBlocked(SIGUSR1)) {
                      return 1;
                  }
                  {
                      const SignalWindow window;
                      if (caught != 1 || IsBlocked(SIGUSR1)) {
                          return 2;
                      }
                  }
                  return IsBlocked(SIGUSR1) ? 0 : 3;
              }),
              0);
}

TEST(SignalWindowTest, EventLoopsWaitIsAWindow) {
    EXPECT_EQ(InChild([] {
                  Quenda::EventLoop& loop = Quenda::EventLoop::Instance();
                  if (!loop.Init()) {
                      return 1;
                  }
                  raise(SIGUSR1);
                  if (caught != 0 || !loop.Poll()) {
                      return 2;
                  }
                  return caught == 1 && IsBlocked(SIGUSR1) ? 0 : 3;
              }),
              0);
}

}  // namespace

}  // namespace Monitor
