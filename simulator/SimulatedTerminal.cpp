#include "simulator/SimulatedTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstring>
#include <sstream>

#include "simulator/FirstProcess.h"
#include "simulator/Namespaces.h"
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

std::string ReadToEnd(int fd) {
    std::string text;
    std::array<char, 256> chunk = {};
    ssize_t count = 0;
    while ((count = read(fd, chunk.data(), chunk.size())) > 0) {
        text.append(chunk.data(), static_cast<size_t>(count));
    }
    return text;
}

}  // namespace

SimulatedTerminal::SimulatedTerminal(TerminalOptions options)
    : options_(std::move(options)), start_(std::chrono::steady_clock::now()) {}

SimulatedTerminal::~SimulatedTerminal() {
    PowerOff();
}

bool SimulatedTerminal::PowerOn(std::string* reason) {
    start_ = std::chrono::steady_clock::now();
    return Boot(reason);
}

bool SimulatedTerminal::Boot(std::string* reason) {
    int ready[2] = {-1, -1};
    syslog_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (syslog_ < 0 || pipe2(ready, O_CLOEXEC) != 0) {
        *reason = strerror(errno);
        return false;
    }
    init_ = CloneIntoNamespaces([&] { RunFirstProcess(options_, syslog_, ready[1]); }, reason);
    (void)close(ready[1]);
    const std::string answer = init_ > 0 ? ReadToEnd(ready[0]) : "";
    (void)close(ready[0]);
    if (answer == "ready") {
        if (access(Path(kMonitorProgram).c_str(), X_OK) == 0) {
            return true;
        }
        *reason = std::string("cannot reach into the terminal: ") + strerror(errno);
    } else if (init_ > 0) {
        *reason = answer.empty() ? "the first process has died" : answer;
    }
    PowerOff();
    return false;
}

void SimulatedTerminal::PowerOff() {
    if (init_ > 0) {
        // The kernel kills everything else in the namespaces before the wait returns.
        (void)kill(init_, SIGKILL);
        (void)waitpid(init_, nullptr, 0);
        init_ = -1;
    }
    if (syslog_ >= 0) {
        (void)close(syslog_);
        syslog_ = -1;
    }
    watchdog_.Reset();
}

void SimulatedTerminal::Bite() {
    Add({0, Source::kWatchdog, -1, false, "BITES: the terminal reboots"});
    PowerOff();
    onBackupPartition_ = true;
    std::string reason;
    if (!Boot(&reason)) {
        Note("the terminal does not come up again: " + reason);
        return;
    }
    Note("the terminal comes up from its backup partition");
    StartMonitor(std::vector<std::string>(monitorArguments_));
}

std::vector<std::string> SimulatedTerminal::MonitorCommand(
    const std::vector<std::string>& arguments) const {
    // The library takes itself out of the environment again: what the daemon starts runs without.
    // A daemon built with sanitizers is to put up with it and to leave its reports behind.
    std::vector<std::string> command = {
        "/usr/bin/env", "ASAN_OPTIONS=verify_asan_link_order=0:log_path=/tmp/sanitizer",
        "UBSAN_OPTIONS=print_stacktrace=1:log_path=/tmp/sanitizer"};
    std::istringstream wrapper(options_.monitorWrapper);
    std::string word;
    if (options_.monitorWrapper.empty()) {
        command.push_back(std::string("LD_PRELOAD=") + kRedirectLibrary);
    }
    while (wrapper >> word) {
        command.push_back(word);
    }
    command.emplace_back(kMonitorProgram);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

CommandResult SimulatedTerminal::StartMonitor(const std::vector<std::string>& arguments) {
    monitorArguments_ = arguments;
    return Run(MonitorCommand(arguments));
}

CommandResult SimulatedTerminal::Run(const std::vector<std::string>& command) {
    std::vector<char*> argv;
    for (const auto& word : command) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);
    return Inside([&argv] {
        (void)execv(argv[0], argv.data());
        perror(argv[0]);
        return 127;
    });
}

bool SimulatedTerminal::Signal(pid_t pid, int signal) {
    return Inside([=] { return kill(pid, signal) == 0 ? 0 : 1; }).status == 0;
}

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

double SimulatedTerminal::Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

std::string SimulatedTerminal::Path(const std::string& inside) const {
    return "/proc/" + std::to_string(init_) + "/root" + inside;
}

std::vector<Process> SimulatedTerminal::Processes(const std::string& name) const {
    std::vector<Process> processes = ListProcesses(Path("/proc"));
    if (!name.empty()) {
        const auto other = [&name](const Process& process) { return process.name != name; };
        processes.erase(std::remove_if(processes.begin(), processes.end(), other), processes.end());
    }
    return processes;
}

}  // namespace Simulator
