#include "board/BoardTerminal.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>

#include "board/Lines.h"

namespace Board {
namespace {

using Clock = std::chrono::steady_clock;

// Far beyond what any of it takes: a slow workstation is slow, not wrong.
constexpr std::chrono::seconds kBootPatience{120};
constexpr std::chrono::seconds kCommandPatience{120};
constexpr size_t kLinesKept = 2000;  // in characters

// What stands on the console before what the kernel, its driver and the first process have to say.
constexpr char kBanner[] = "Linux version ";
constexpr char kWatchdog[] = "cpld_watchdog: ";

// Takes the beginning off the text, if it has it.
bool TakeOff(const std::string& beginning, std::string* text) {
    const bool has = text->compare(0, beginning.size(), beginning) == 0;
    text->erase(0, has ? beginning.size() : 0);
    return has;
}

// Appends what has come. False when the machine is off.
bool Receive(int fd, std::string* text) {
    std::array<char, 4096> chunk = {};
    ssize_t count = 0;
    while ((count = recv(fd, chunk.data(), chunk.size(), MSG_DONTWAIT)) > 0) {
        text->append(chunk.data(), static_cast<size_t>(count));
    }
    return count != 0;
}

}  // namespace

bool BoardTerminal::Boot(std::string* reason) {
    isUp_ = false;
    text_.clear();
    pieces_.clear();
    lastLines_.clear();
    const std::string watchdog = "cpld_watchdog.divisor=" + std::to_string(divisor_);
    if (!machine_.SwitchOn(directory_, watchdog)) {
        *reason = "there is no process or socket left for the machine";
        return false;
    }
    const unsigned boot = ++boots_;
    const auto deadline = Clock::now() + kBootPatience;
    while (!isUp_ && boot == boots_ && machine_.Console() >= 0 && Clock::now() < deadline) {
        (void)Pump(100);
    }
    if (!isUp_) {
        machine_.SwitchOff();
        *reason = "the machine does not boot; its console ends with\n" + lastLines_;
    }
    return isUp_;
}

Simulator::CommandResult BoardTerminal::Run(const std::vector<std::string>& command) {
    std::string line;
    for (const auto& word : command) {
        line += (line.empty() ? "" : std::string(1, kBetweenWords)) + Escape(word);
    }
    line += "\n";
    result_ = {};
    hasEnded_ = false;
    // Far shorter than what the socket holds.
    if (send(machine_.Console(), line.data(), line.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(line.size())) {
        return result_;
    }
    const unsigned boot = boots_;
    const auto deadline = Clock::now() + kCommandPatience;
    while (!hasEnded_ && boot == boots_ && machine_.Console() >= 0 && Clock::now() < deadline) {
        (void)Pump(100);
    }
    return boot == boots_ ? result_ : Simulator::CommandResult();
}

bool BoardTerminal::Pump(int timeoutMs, int input) {
    std::array<pollfd, 2> fds = {{{machine_.Console(), POLLIN, 0}, {input, POLLIN, 0}}};
    const bool hasInput = poll(fds.data(), fds.size(), timeoutMs) > 0 && fds[1].revents != 0;
    if (fds[0].revents != 0) {
        const bool isOn = Receive(machine_.Console(), &text_);
        std::string line;
        while (TakeLine(&text_, &line)) {
            TakeConsole(line);
        }
        if (!isOn) {
            Restart();
        }
    }
    return hasInput;
}

// "[    0.390000] cpld_watchdog: armed with 300 s\r".
void BoardTerminal::TakeConsole(const std::string& line) {
    const std::string whole = line.substr(0, line.find('\r'));
    std::string text = whole.substr(std::min(whole.size(), whole.find("] ") + 2));
    if (TakeOff(kFromInit, &text)) {
        TakeFromInit(text);
        return;
    }
    lastLines_ += whole + "\n";
    if (lastLines_.size() > kLinesKept) {
        lastLines_.erase(0, lastLines_.find('\n') + 1);
    }
    if (TakeOff(kWatchdog, &text)) {
        AddWatchdog(text);
    } else if (kernel_.empty() && TakeOff(kBanner, &text)) {
        kernel_ = text.substr(0, text.find(' '));
    }
}

void BoardTerminal::TakeFromInit(const std::string& line) {
    const std::string text = line.empty() ? "" : Unescape(line.substr(1));
    switch (line[0]) {
        case kPiece:
            pieces_ += text;
            break;
        case kEvent:
            isUp_ = true;
            Take(pieces_ + text);
            pieces_.clear();
            break;
        case kOutput:
            result_.output += text;
            break;
        case kEnd:
            result_.status = static_cast<int>(strtol(text.c_str(), nullptr, 10));
            hasEnded_ = true;
            break;
        default:
            break;
    }
}

void BoardTerminal::Restart() {
    machine_.SwitchOff();
    if (!isUp_) {
        return;  // it was booting: that has failed
    }
    std::string reason;
    if (!Boot(&reason)) {
        Note("the terminal does not come up again: " + reason);
        return;
    }
    Note("the terminal comes up from its backup partition");
    (void)StartMonitor(std::vector<std::string>(MonitorArguments()));
}

std::string BoardTerminal::Description() const {
    const std::string sooner = divisor_ == 1 ? ""
                                             : "; its watchdog bites " + std::to_string(divisor_) +
                                                   " times sooner than it says";
    return "a PowerPC e500mc, emulated by qemu, big-endian, 32 bits; Linux " + kernel_ + sooner;
}

}  // namespace Board
