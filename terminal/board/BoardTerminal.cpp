#include "terminal/board/BoardTerminal.h"

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "terminal/Spawn.h"

namespace Terminals::Board {
namespace {

// Much longer than either takes, even on a slow host.
constexpr double kBootPatience = 120;
constexpr double kCommandPatience = 600;  // one command sleeps until a bite is due
constexpr size_t kCharactersKept = 2000;  // of the console's last lines

// The beginnings of the lines of terminal/board/init.
constexpr char kOutput[] = "board: ";
constexpr char kEnd[] = "board ";  // the exit status

// Appends everything that can be read. False if the machine is off.
bool Receive(int fd, std::string* text) {
    std::array<char, 4096> chunk = {};
    ssize_t count = 0;
    while ((count = recv(fd, chunk.data(), chunk.size(), MSG_DONTWAIT)) > 0) {
        text->append(chunk.data(), static_cast<size_t>(count));
    }
    return count != 0;
}

}  // namespace

bool BoardTerminal::SwitchOn() {
    int console[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, console) != 0) {
        return false;
    }
    console_ = console[0];
    emulator_ = Spawn({directory_ + "/boot", "cpld_watchdog.divisor=" + std::to_string(divisor_)},
                      console[1], console[1]);
    (void)close(console[1]);
    return emulator_ > 0;
}

void BoardTerminal::SwitchOff() {
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

bool BoardTerminal::Boot(std::string* reason) {
    SwitchOff();
    isUp_ = false;
    text_.clear();
    lastLines_.clear();
    result_ = {};
    ++boots_;
    if (!SwitchOn()) {
        *reason = "there is no process or socket left for the machine";
        return false;
    }
    AwaitEnd(kBootPatience);
    if (!isUp_) {
        SwitchOff();
        *reason = "the machine does not boot; its console ends with\n" + lastLines_;
    }
    return isUp_;
}

CommandResult BoardTerminal::Run(const std::string& script) {
    const std::string lines = script + "\n---\n";
    result_ = {};
    // A script is far shorter than the socket's buffer.
    if (send(console_, lines.data(), lines.size(), MSG_NOSIGNAL) ==
        static_cast<ssize_t>(lines.size())) {
        AwaitEnd(kCommandPatience);
    }
    return result_;
}

void BoardTerminal::AwaitEnd(double seconds) {
    const unsigned boot = boots_;
    const double deadline = Seconds() + seconds;
    while (result_.status == -1 && boot == boots_ && console_ >= 0 && Seconds() < deadline) {
        (void)Pump(100);
    }
    if (boot != boots_) {
        result_ = {};
    }
}

bool BoardTerminal::Pump(int timeoutMs, int input) {
    std::array<pollfd, 2> fds = {{{console_, POLLIN, 0}, {input, POLLIN, 0}}};
    const bool hasInput = poll(fds.data(), fds.size(), timeoutMs) > 0 && fds[1].revents != 0;
    if (fds[0].revents != 0) {
        const bool isOn = Receive(console_, &text_);
        for (size_t end = text_.find('\n'); end != std::string::npos; end = text_.find('\n')) {
            const std::string line = text_.substr(0, end);
            text_.erase(0, end + 1);
            TakeConsole(line);
        }
        if (!isOn) {
            SwitchOff();
            if (isUp_) {  // otherwise the boot has failed
                Reboot();
            }
        }
    }
    return hasInput;
}

// "[    0.390000] cpld_watchdog: armed with 300 s\r".
void BoardTerminal::TakeConsole(const std::string& line) {
    const std::string whole = line.substr(0, line.find('\r'));
    const size_t time = whole.find("] ");
    const std::string text = time == std::string::npos ? whole : whole.substr(time + 2);
    if (text.rfind(kOutput, 0) == 0) {
        result_.output += text.substr(sizeof(kOutput) - 1) + "\n";
        return;
    }
    lastLines_ += whole + "\n";
    if (lastLines_.size() > kCharactersKept) {
        lastLines_.erase(0, lastLines_.find('\n') + 1);
    }
    if (text.rfind(kEnd, 0) == 0) {
        const long status = strtol(text.c_str() + sizeof(kEnd) - 1, nullptr, 10);
        result_.status = W_EXITCODE(static_cast<int>(status), 0);
        isUp_ = true;
    } else {
        Take(text);  // other lines of the kernel are ignored
    }
}

std::string BoardTerminal::Description() {
    const std::string kernel =
        Run("read name word release rest </proc/version; echo $release").output;
    const std::string sooner = divisor_ == 1 ? ""
                                             : "; its watchdog bites " + std::to_string(divisor_) +
                                                   " times sooner than it says";
    return "a PowerPC e500mc, emulated by qemu, big-endian, 32 bits; Linux " +
           kernel.substr(0, kernel.find('\n')) + sooner;
}

}  // namespace Terminals::Board
