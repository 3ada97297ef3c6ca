#include "terminal/simulated/SimulatedTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace Terminals::Simulated {
namespace {

// Everything that can be read from `fd` by now.
std::string ReadAvailable(int fd) {
    std::string text;
    std::array<char, 4096> chunk = {};
    ssize_t count = 0;
    while ((count = read(fd, chunk.data(), chunk.size())) > 0) {
        text.append(chunk.data(), static_cast<size_t>(count));
    }
    return text;
}

}  // namespace

bool SimulatedTerminal::Boot(std::string* reason) {
    PowerOff();
    const std::string& standIns = options_.standInDirectory;
    const auto chosen = [](const std::string& given, const std::string& usual) {
        return given.empty() ? usual : given;
    };
    const std::string& package = options_.packageDirectory;
    const bool up =
        sandbox_.Open({standIns + "/boot", standIns,
                       package.empty() ? options_.monitorProgram : package + kMonitorProgram,
                       chosen(options_.keldraProgram, standIns + "/stand_in_keldra"),
                       chosen(options_.redirectLibrary, standIns + "/libcpld_report.so"), package},
                      reason) &&
        BindSyslog(reason);
    if (!up) {
        PowerOff();
    } else if (!HasStandInKeldra()) {
        (void)RunScript(std::string(kLauncherWatch) + " >/dev/null &");
    }
    return up;
}

bool SimulatedTerminal::BindSyslog(std::string* reason) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    (void)Path(kSyslogSocket).copy(address.sun_path, sizeof(address.sun_path) - 1);
    syslog_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const bool bound = bind(syslog_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    *reason = bound ? "" : std::string("cannot bind /dev/log: ") + strerror(errno);
    return bound;
}

void SimulatedTerminal::PowerOff() {
    sandbox_.Close();
    if (syslog_ >= 0) {
        (void)close(syslog_);
        syslog_ = -1;
    }
    watchdog_ = {};
}

CommandResult SimulatedTerminal::Run(const std::vector<std::string>& command) {
    CommandResult result;
    int output[2] = {-1, -1};
    if (pipe2(output, O_CLOEXEC | O_NONBLOCK) != 0) {
        return result;
    }
    (void)fcntl(output[1], F_SETFL, 0);  // the command's end waits, ours does not
    const pid_t pid = sandbox_.Start(command, output[1]);
    const int end = pid > 0 ? static_cast<int>(syscall(SYS_pidfd_open, pid, 0)) : -1;
    (void)close(output[1]);
    // What the command left running may keep its output open: its end is what counts.
    while (end >= 0 && !Pump(20, end)) {
        result.output += ReadAvailable(output[0]);
    }
    if (pid > 0 && waitpid(pid, &result.status, 0) != pid) {
        result.status = -1;
    }
    result.output += ReadAvailable(output[0]);
    (void)close(output[0]);
    (void)close(end);
    return result;
}

bool SimulatedTerminal::Pump(int timeoutMs, int input) {
    const double toWatchdog = std::max(0.0, watchdog_.NextLine() - Seconds()) * 1000;
    const int waitMs = static_cast<int>(std::min<double>(timeoutMs, std::ceil(toWatchdog)));
    std::array<pollfd, 2> fds = {{{syslog_, POLLIN, 0}, {input, POLLIN, 0}}};
    const int ready = poll(fds.data(), fds.size(), waitMs);
    std::array<char, 2048> datagram = {};
    ssize_t count = 0;
    while ((count = recv(syslog_, datagram.data(), datagram.size(), 0)) >= 0) {
        Take(std::string(datagram.data(), static_cast<size_t>(count)));
    }
    TakeTime();
    return ready > 0 && fds[1].revents != 0;
}

// "FILE TEXT": what was written to one of the watchdog's control files.
void SimulatedTerminal::TakeWatchdog(const std::string& text) {
    const size_t blank = text.find(' ');
    const std::string news =
        watchdog_.Write(text.substr(0, blank), text.substr(blank + 1), Seconds());
    if (!news.empty()) {
        AddWatchdog(news);
    }
}

void SimulatedTerminal::TakeTime() {
    const std::string line = watchdog_.Tick(Seconds());
    if (!line.empty()) {
        AddWatchdog(line);
    }
    if (watchdog_.HasBitten()) {
        Reboot();
    }
}

std::vector<std::string> SimulatedTerminal::MonitorCommand(
    const std::vector<std::string>& arguments) const {
    // The library takes itself out of the environment again: what the daemon starts runs without.
    std::vector<std::string> command = {"/usr/bin/env",
                                        std::string("LD_PRELOAD=") + kRedirectLibrary};
    for (const std::string& word : Terminal::MonitorCommand(arguments)) {
        command.push_back(word);
    }
    return command;
}

bool SimulatedTerminal::Signal(pid_t pid, int signal) {
    return RunScript("kill -" + std::to_string(signal) + " " + std::to_string(pid)).status == 0;
}

std::vector<Process> SimulatedTerminal::Processes(const std::string& name) const {
    std::vector<Process> processes;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(Path("/proc"), error)) {
        std::string line;
        std::getline(std::ifstream(entry.path() / "stat"), line);
        Process process;
        char itsName[16] = "";
        // Neither of what is not a process nor of one that has just gone.
        if (sscanf(line.c_str(), "%d (%15[^)]) %c %d", &process.pid, itsName, &process.state,
                   &process.parent) == 4 &&
            (name.empty() || name == itsName)) {
            process.name = itsName;
            processes.push_back(process);
        }
    }
    std::sort(processes.begin(), processes.end(),
              [](const Process& a, const Process& b) { return a.pid < b.pid; });
    return processes;
}

bool WriteInside(const SimulatedTerminal& terminal, const std::string& path,
                 const std::string& content) {
    std::ofstream file(terminal.Path(path), std::ios::binary);
    file << content << std::flush;
    return file.good();
}

}  // namespace Terminals::Simulated
