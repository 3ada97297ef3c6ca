#include "terminal/board/Machine.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "terminal/Spawn.h"

namespace Terminals::Board {

bool Machine::SwitchOn(const std::string& directory, const std::string& parameters) {
    SwitchOff();
    int console[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, console) != 0) {
        return false;
    }
    console_ = console[0];
    // Each instruction takes 8 ns of the machine's time: on a busy host its clocks and its watchdog
    // slow down together, and nothing in it is late.
    emulator_ = Spawn({"qemu-system-ppc",
                       "-M",
                       "ppce500",
                       "-cpu",
                       "e500mc",
                       "-m",
                       "128",
                       "-icount",
                       "shift=3",
                       "-no-reboot",
                       "-nic",
                       "none",
                       "-display",
                       "none",
                       "-monitor",
                       "none",
                       "-chardev",
                       "stdio,id=console,signal=off",
                       "-serial",
                       "chardev:console",
                       "-kernel",
                       directory + "/vmlinux",
                       "-initrd",
                       directory + "/image",
                       "-append",
                       "console=ttyS0 loglevel=8 printk.devkmsg=on panic=-1 " + parameters},
                      console[1], console[1]);
    (void)close(console[1]);
    return emulator_ > 0;
}

void Machine::SwitchOff() {
    if (emulator_ > 0) {
        (void)kill(emulator_, SIGKILL);
        (void)waitpid(emulator_, nullptr, 0);
        emulator_ = -1;
    }
    if (console_ >= 0) {
        (void)close(console_);
        console_ = -1;
    }
}

}  // namespace Terminals::Board
