#include "terminal/Terminal.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace Terminals {
namespace {

constexpr size_t kTimeStampLength = sizeof("Mon DD HH:MM:SS ") - 1;

// The senders of lines, as they name themselves on either kind of terminal.
const struct {
    const char* who;
    Source source;
} kSenders[] = {
    {"keldra", Source::kKeldra},
    {"sshd", Source::kSshd},
    {"led", Source::kLed},
    {"init", Source::kInit},
    {"simulator", Source::kSimulator},
    {"watchdog", Source::kWatchdog},
    {"keldra_monitor:", Source::kLog},
    {"cpld_watchdog:", Source::kWatchdog},
};

}  // namespace

bool Terminal::PowerOn(std::string* reason) {
    start_ = std::chrono::steady_clock::now();
    return Boot(reason);
}

CommandResult Terminal::StartMonitor(const std::string& arguments) {
    monitorArguments_ = arguments;
    const size_t before = events_.size();
    CommandResult result = Run(MonitorCommand() + " " + arguments);
    // For a shell, an empty program file is a script that succeeds.
    if (result.status == 0 && Pids("keldra_monitor").empty() && MonitorEnds(before).empty()) {
        result = {-1, result.output + "no process is called keldra_monitor"};
    }
    return result;
}

std::string Terminal::Pids(const std::string& name) {
    return Run("for process in /proc/[0-9]*; do read -r name <$process/comm && [ \"$name\" = " +
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
        Add(Source::kInit, "the terminal does not come up again: " + reason);
        return;
    }
    Note("the terminal comes up from its backup partition");
    const CommandResult start = StartMonitor(monitorArguments_);
    if (start.status != 0) {
        Add(Source::kInit, "the daemon does not start: " + start.output);
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

void Terminal::Take(const std::string& line) {
    if (line[0] == '<') {
        const int priority = static_cast<int>(strtol(line.c_str() + 1, nullptr, 10));
        const size_t colon = line.find(": ", line.find('>') + 1 + kTimeStampLength);
        const size_t begin = colon == std::string::npos ? 0 : colon + 2;
        const size_t end = line.find_last_not_of(std::string("\n\0", 2)) + 1;
        Add(Source::kLog, line.substr(begin, end - begin), priority);
        return;
    }
    const size_t blank = line.find(' ');
    for (const auto& sender : kSenders) {
        if (blank < line.size() - 1 && line.compare(0, blank, sender.who) == 0) {
            Add(sender.source, line.substr(blank + 1));
        }
    }
}

// Of all processes, only the daemon should never end. The watchdog is re-armed all the time.
bool Terminal::IsRoutine(Source source, const std::string& text) {
    if (source == Source::kWatchdog) {
        return std::exchange(lastOfWatchdog_, text) == text;
    }
    return source == Source::kInit && text.rfind("keldra_monitor ", 0) != 0;
}

void Terminal::Add(Source source, const std::string& text, int priority) {
    events_.push_back({Seconds(), source, priority, IsRoutine(source, text), text});
    if (listener_) {
        listener_(events_.back());
    }
}

}  // namespace Terminals
