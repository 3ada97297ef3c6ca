#include "terminal/board/Machine.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <vector>

namespace Board {
namespace {

constexpr char kEmulator[] = "qemu-system-ppc";

std::vector<std::string> Command(const std::string& directory, const std::string& parameters,
                                 int console) {
    return {kEmulator, "-M", "ppce500", "-cpu", "e500mc", "-m", "128",
            // 8 ns for each instruction: on a busy workstation all of the machine, its clocks and
            // its watchdog become slow together, and nothing in it is late.
            "-icount", "shift=3", "-no-reboot", "-nic", "none", "-display", "none", "-monitor",
            "none", "-chardev", "socket,id=console,fd=" + std::to_string(console), "-serial",
            "chardev:console", "-kernel", directory + "/vmlinux", "-initrd", directory + "/image",
            "-append", "console=ttyS0 loglevel=8 printk.devkmsg=on panic=-1 " + parameters};
}

[[noreturn]] void Execute(const std::vector<std::string>& command, pid_t parent) {
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(1);
    }
    std::vector<char*> argv;
    for (const auto& word : command) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);
    (void)execvp(argv[0], argv.data());
    _exit(127);
}

}  // namespace

bool Machine::SwitchOn(const std::string& directory, const std::string& parameters) {
    SwitchOff();
    int console[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, console) != 0) {
        return false;
    }
    console_ = console[0];
    (void)fcntl(console_, F_SETFD, FD_CLOEXEC);
    const auto command = Command(directory, parameters, console[1]);
    const pid_t self = getpid();
    emulator_ = fork();
    if (emulator_ == 0) {
        Execute(command, self);
    }
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

}  // namespace Board
