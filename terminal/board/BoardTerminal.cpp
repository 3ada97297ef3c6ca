#include "terminal/board/BoardTerminal.h"

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>

#include "terminal/Spawn.h"

namespace Terminals::Board {
namespace {

using Clock = std::chrono::steady_clock;

// Much longer than either takes, even on a slow host.
constexpr std::chrono::seconds kBootPatience{120};
constexpr std::chrono::seconds kCommandPatience{600};  // one command sleeps until a bite is due
constexpr size_t kCharactersKept = 2000;               // of the console's last lines

// The beginnings of the lines of the kernel, the driver, terminal/board/init and the daemon.
constexpr char kBanner[] = "Linux version ";
constexpr char kWatchdog[] = "cpld_watchdog: ";
constexpr char kOutput[] = "board: ";
constexpr char kEnd[] = "board ";  // the exit status
constexpr char kDaemon[] = "keldra_monitor: ";

// Removes the beginning from the text. False if the text begins otherwise.
bool TakeOff(const std::string& beginning, std::string* text) {
    const bool has = text->compare(0, beginning.size(), beginning) == 0;
    text->erase(0, has ? beginning.size() : 0);
    return has;
}

// A word, quoted for the shell.
std::string Quote(const std::string& word) {
    std::string quoted;
    for (const char c : word) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return "'" + quoted + "' ";
}

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
    if (!SwitchOn()) {
        *reason = "there is no process or socket left for the machine";
        return false;
    }
    const unsigned boot = ++boots_;
    const auto deadline = Clock::now() + kBootPatience;
    while (!isUp_ && boot == boots_ && console_ >= 0 && Clock::now() < deadline) {
        (void)Pump(100);
    }
    if (!isUp_) {
        SwitchOff();
        *reason = "the machine does not boot; its console ends with\n" + lastLines_;
    }
    return isUp_;
}

CommandResult BoardTerminal::Run(const std::vector<std::string>& command) {
    std::string script;
    for (const auto& word : command) {
        script += Quote(word);
    }
    script += "\n---\n";
    result_ = {};
    hasEnded_ = false;
    // A script is far shorter than the socket's buffer.
    if (send(console_, script.data(), script.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(script.size())) {
        return result_;
    }
    const unsigned boot = boots_;
    const auto deadline = Clock::now() + kCommandPatience;
    while (!hasEnded_ && boot == boots_ && console_ >= 0 && Clock::now() < deadline) {
        (void)Pump(100);
    }
    return boot == boots_ ? result_ : CommandResult();
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
    std::string text = time == std::string::npos ? whole : whole.substr(time + 2);
    if (TakeOff(kOutput, &text)) {
        result_.output += text + "\n";
        return;
    }
    lastLines_ += whole + "\n";
    if (lastLines_.size() > kCharactersKept) {
        lastLines_.erase(0, lastLines_.find('\n') + 1);
    }
    if (TakeOff(kEnd, &text)) {
        result_.status = W_EXITCODE(static_cast<int>(strtol(text.c_str(), nullptr, 10)), 0);
        isUp_ = hasEnded_ = true;
    } else if (TakeOff(kWatchdog, &text)) {
        AddWatchdog(text);
    } else if (kernel_.empty() && TakeOff(kBanner, &text)) {
        kernel_ = text.substr(0, text.find(' '));
    } else if (TakeOff(kDaemon, &text)) {
        Take("<29>Jan  1 00:00:00 " + (kDaemon + text));  // the form in which it came to syslog
    } else {
        Take(text);  // a report of a stand-in; other lines of the kernel are ignored
    }
}

std::string BoardTerminal::Description() const {
    const std::string sooner = divisor_ == 1 ? ""
                                             : "; its watchdog bites " + std::to_string(divisor_) +
                                                   " times sooner than it says";
    return "a PowerPC e500mc, emulated by qemu, big-endian, 32 bits; Linux " + kernel_ + sooner;
}

}  // namespace Terminals::Board
