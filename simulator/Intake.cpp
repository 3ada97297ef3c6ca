// How the simulator takes in what happens inside its terminal.
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "simulator/SimulatedTerminal.h"
#include "simulator/Syslog.h"

namespace Simulator {
namespace {

const struct {
    const char* who;
    Source source;
} kReporters[] = {
    {"keldra", Source::kKeldra}, {"sshd", Source::kSshd}, {"service", Source::kSshd},
    {"led", Source::kLed},       {"init", Source::kInit},
};

}  // namespace

bool SimulatedTerminal::Pump(int timeoutMs, int input) {
    const double toWatchdog = std::max(0.0, watchdog_.NextEvent() - Seconds()) * 1000;
    const int waitMs = static_cast<int>(std::min<double>(timeoutMs, std::ceil(toWatchdog)));
    std::array<pollfd, 2> fds = {{{syslog_, POLLIN, 0}, {input, POLLIN, 0}}};
    const int ready = poll(fds.data(), fds.size(), waitMs);
    TakeDatagrams();
    TakeTime();
    return ready > 0 && fds[1].revents != 0;
}

void SimulatedTerminal::TakeDatagrams() {
    std::array<char, 2048> buffer = {};
    ssize_t count = 0;
    while ((count = recv(syslog_, buffer.data(), buffer.size(), 0)) >= 0) {
        const std::string datagram(buffer.data(), static_cast<size_t>(count));
        if (datagram[0] == '<') {
            const SyslogLine line = ParseSyslog(datagram);
            Add({0, Source::kLog, line.priority, false, line.text});
        } else {
            TakeReport(datagram);
        }
    }
}

void SimulatedTerminal::TakeReport(const std::string& report) {
    const size_t blank = report.find(' ');
    const std::string who = report.substr(0, blank);
    const std::string what = blank == std::string::npos ? "" : report.substr(blank + 1);
    if (who == "watchdog") {
        TakeWrite(what);
    }
    for (const auto& reporter : kReporters) {
        if (who == reporter.who) {
            // Every process ends some time; the daemon's end is news.
            const bool routine =
                reporter.source == Source::kInit && what.rfind("keldra_monitor ", 0) != 0;
            Add({0, reporter.source, -1, routine, what});
        }
    }
}

// "FILE TEXT": what was written to one of the watchdog's control files.
void SimulatedTerminal::TakeWrite(const std::string& write) {
    const size_t blank = write.find(' ');
    const unsigned before = watchdog_.IsArmed() ? watchdog_.BiteSeconds() : 0;
    const std::string text =
        watchdog_.Write(write.substr(0, blank), write.substr(blank + 1), Seconds());
    if (!text.empty()) {
        Add({0, Source::kWatchdog, -1, before == watchdog_.BiteSeconds(), text});
    }
}

void SimulatedTerminal::TakeTime() {
    const std::string line = watchdog_.Tick(Seconds());
    if (!line.empty()) {
        Add({0, Source::kWatchdog, -1, false, line});
    }
    if (watchdog_.HasBitten(Seconds())) {
        Bite();
    }
}

void SimulatedTerminal::Add(Event event) {
    event.seconds = Seconds();
    events_.push_back(event);
    if (listener_) {
        listener_(event);
    }
}

std::optional<Event> SimulatedTerminal::Await(Source source, const std::string& text,
                                              double seconds) {
    const double deadline = Seconds() + seconds;
    while (true) {
        size_t& next = next_[source];
        while (next < events_.size()) {
            const Event& event = events_[next++];
            if (event.source == source && event.text.find(text) != std::string::npos) {
                return event;
            }
        }
        const double left = deadline - Seconds();
        if (left <= 0) {
            return std::nullopt;
        }
        Pump(static_cast<int>(std::ceil(std::min(left, 1.0) * 1000)));
    }
}

void SimulatedTerminal::Mark() {
    Pump(0);
    for (const Source source : kAllSources) {
        next_[source] = events_.size();
    }
}

}  // namespace Simulator
