#include "tests/support/NamedProcess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

std::string OwnName(const std::string& prefix) {
    return prefix + std::to_string(getpid());
}

NamedProcess::NamedProcess(const std::string& name) {
    int ready[2];
    (void)!pipe(ready);
    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        prctl(PR_SET_NAME, name.c_str());
        (void)signal(SIGQUIT, SIG_DFL);  // a script's background processes ignore it
        (void)!write(ready[1], "", 1);
        for (;;) {
            pause();
        }
    }
    close(ready[1]);
    char byte = 0;
    (void)!read(ready[0], &byte, 1);  // until it has its name
    close(ready[0]);
}

NamedProcess::~NamedProcess() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        (void)Wait();
    }
}

int NamedProcess::Wait() {
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = 0;
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}
