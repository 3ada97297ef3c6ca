#include "terminal/Terminal.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "terminal/TerminalLayout.h"

namespace Terminals {
namespace {

constexpr size_t kTimeStampLength = sizeof("Mon DD HH:MM:SS ") - 1;

const struct {
    const char* who;
    Source source;
} kReporters[] = {
    {"keldra", Source::kKeldra}, {"sshd", Source::kSshd}, {"service", Source::kSshd},
    {"led", Source::kLed},       {"init", Source::kInit}, {"simulator", Source::kSimulator},
};

// "<PRI>Mon DD HH:MM:SS ident: text".
Event LogLine(std::string text) {
    while (text.back() == '\n' || text.back() == '\0') {
        text.pop_back();
    }
    const int priority = static_cast<int>(strtol(text.c_str() + 1, nullptr, 10));
    const size_t colon = text.find(": ", text.find('>') + 1 + kTimeStampLength);
    if (colon != std::string::npos) {
        text.erase(0, colon + 2);
    }
    return {0, Source::kLog, priority, false, text};
}

}  // namespace

std::vector<std::string> Terminal::MonitorCommand(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command = {kMonitorProgram};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

bool Terminal::PowerOn(std::string* reason) {
    start_ = std::chrono::steady_clock::now();
    return Boot(reason);
}

CommandResult Terminal::StartMonitor(const std::vector<std::string>& arguments) {
    monitorArguments_ = arguments;
    const size_t before = events_.size();
    CommandResult result = Run(MonitorCommand(arguments));
    // For a shell, an empty program file is a script that succeeds.
    if (result.status == 0 && Pids("keldra_monitor").empty() && MonitorEnds(before).empty()) {
        result = {-1, result.output + "no process is called keldra_monitor"};
    }
    return result;
}

std::string Terminal::Pids(const std::string& name) {
    return RunScript(
               "for process in /proc/[0-9]*; do read -r name <$process/comm && [ \"$name\" = " +
               name + " ] && echo ${process#/proc/}; done 2>/dev/null")
        .output;
}

std::vector<std::string> Terminal::MonitorEnds(size_t from) const {
    std::vector<std::string> ends;
    for (size_t i = from; i < events_.size(); ++i) {
        if (events_[i].source == Source::kInit && !events_[i].routine) {
            ends.push_back(events_[i].text);
        }
    }
    return ends;
}

void Terminal::Reboot() {
    std::string reason;
    if (!Boot(&reason)) {
        Add({0, Source::kInit, -1, false, "the terminal does not come up again: " + reason});
        return;
    }
    Note("the terminal comes up from its backup partition");
    const CommandResult start = StartMonitor(monitorArguments_);
    if (start.status != 0) {
        Add({0, Source::kInit, -1, false, "the daemon does not start: " + start.output});
    }
}

std::optional<Event> Terminal::Await(Source source, const std::string& text, double seconds) {
    const double deadline = Seconds() + seconds;
    while (true) {
        size_t& next = next_[source];
        next = std::max(next, mark_);
        while (next < events_.size()) {
            const Event& event = events_[next++];
            if (event.source == source && event.text.find(text) != std::string::npos) {
                return event;
            }
        }
        const double left = deadline - Seconds();
        if (left <= 0 || IsHopeless()) {
            return std::nullopt;
        }
        (void)Pump(static_cast<int>(std::ceil(std::min(left, 0.2) * 1000)));
    }
}

void Terminal::Mark() {
    (void)Pump(0);
    mark_ = events_.size();
}

double Terminal::Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

void Terminal::Take(const std::string& datagram) {
    if (!datagram.empty() && datagram[0] == '<') {
        Add(LogLine(datagram));
        return;
    }
    const size_t blank = datagram.find(' ');
    const std::string who = datagram.substr(0, blank);
    const std::string what = blank == std::string::npos ? "" : datagram.substr(blank + 1);
    if (who == "watchdog") {
        TakeWatchdog(what);
    }
    for (const auto& reporter : kReporters) {
        if (who == reporter.who) {
            // Of all processes, only the daemon should never end.
            const bool routine =
                reporter.source == Source::kInit && what.rfind("keldra_monitor ", 0) != 0;
            Add({0, reporter.source, -1, routine, what});
        }
    }
}

void Terminal::AddWatchdog(const std::string& text) {
    Add({0, Source::kWatchdog, -1, text == lastOfWatchdog_, text});
    lastOfWatchdog_ = text;
}

void Terminal::Add(Event event) {
    event.seconds = Seconds();
    events_.push_back(event);
    if (listener_) {
        listener_(event);
    }
}

}  // namespace Terminals
