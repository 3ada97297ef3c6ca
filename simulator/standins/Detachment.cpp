#include "simulator/standins/Detachment.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

namespace Simulator {

Detachment::Detachment() {
    int ready[2] = {-1, -1};
    if (pipe2(ready, O_CLOEXEC) != 0) {
        exit(4);
    }
    const pid_t daemon = fork();
    if (daemon != 0) {
        (void)close(ready[1]);
        char word = 0;
        _exit(daemon > 0 && read(ready[0], &word, 1) == 1 ? 0 : 4);
    }
    (void)close(ready[0]);
    toLauncher_ = ready[1];
    (void)setsid();
    (void)!chdir("/");
    const int null = open("/dev/null", O_RDWR);
    for (int fd = 0; fd <= 2; ++fd) {
        (void)dup2(null, fd);
    }
    if (null > 2) {
        (void)close(null);
    }
}

void Detachment::Ready() {
    (void)!write(toLauncher_, "r", 1);
    (void)close(toLauncher_);
}

}  // namespace Simulator
