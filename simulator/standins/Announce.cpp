#include "simulator/standins/Announce.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "simulator/TerminalLayout.h"

void Announce(const std::string& who, const std::string& what) {
    const std::string line = who + " " + what + "\n";
    const int fd = open(Simulator::kEventFifo, O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0) {
        (void)!write(fd, line.data(), line.size());
        (void)close(fd);
    }
}

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
    (void)chdir("/");
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
