#include "terminal/simulated/SimulatedTerminal.h"

#include <poll.h>
#include <sys/mman.h>
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
#include <sstream>

namespace fs = std::filesystem;

namespace Terminals::Simulated {
namespace {

// A path, for other processes as well, of a file in memory that this process has open.
std::string PathOf(int fd) {
    return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(fd);
}

}  // namespace

SimulatedTerminal::SimulatedTerminal(TerminalOptions options) : options_(std::move(options)) {
    const std::string standIns = STAND_IN_DIRECTORY "/";
    const std::string& package = options_.packageDirectory;
    const std::string& keldra = options_.keldraProgram;
    const std::string& library = options_.redirectLibrary;
    // The script and its arguments, in the order that it expects.
    Keep(standIns + "boot");
    Keep(package.empty() ? MONITOR_PROGRAM : package + kMonitorProgram);
    Keep(keldra.empty() ? standIns + "stand_in_keldra" : keldra);
    Keep(library.empty() ? standIns + "libcpld_report.so" : library);
    for (const char* name : {"announce", "launcher_watch.sh", "led_ctl.sh", "service",
                             "stand_in_init", "stand_in_sshd"}) {
        Keep(standIns + name);
    }
}

SimulatedTerminal::~SimulatedTerminal() {
    PowerOff();
    for (const int fd : kept_) {
        (void)close(fd);
    }
}

void SimulatedTerminal::Keep(const std::string& path) {
    kept_.push_back(memfd_create(path.c_str(), MFD_CLOEXEC));
    std::ofstream(PathOf(kept_.back()), std::ios::binary)
        << std::ifstream(path, std::ios::binary).rdbuf();
}

bool SimulatedTerminal::Boot(std::string* reason) {
    PowerOff();
    std::vector<std::string> boot = {"bash"};
    for (const int fd : kept_) {
        boot.push_back(PathOf(fd));
    }
    boot.push_back(options_.packageDirectory);
    const bool up = sandbox_.Open(boot, reason) && BindSyslog(reason);
    if (!up) {
        PowerOff();
    } else if (!HasStandInKeldra()) {
        (void)Run(std::string(kLauncherWatch) + " >/dev/null &");
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

CommandResult SimulatedTerminal::Run(const std::string& script) {
    CommandResult result;
    const int output = memfd_create("output", MFD_CLOEXEC);
    const pid_t pid = sandbox_.Start({"/bin/sh", "-c", script}, output);
    const int end = pid > 0 ? static_cast<int>(syscall(SYS_pidfd_open, pid, 0)) : -1;
    while (end >= 0 && !Pump(20, end)) {
    }
    if (pid > 0 && waitpid(pid, &result.status, 0) != pid) {
        result.status = -1;
    }
    std::ostringstream text;
    text << std::ifstream(PathOf(output)).rdbuf();
    result.output = text.str();
    (void)close(output);
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
        const std::string report(datagram.data(), static_cast<size_t>(count));
        // "cpld FILE TEXT": the text was written to that control file of the watchdog.
        Take(report.rfind("cpld ", 0) == 0 ? watchdog_.Write(report.substr(5), Seconds()) : report);
    }
    Take(watchdog_.Tick(Seconds()));
    if (watchdog_.HasBitten()) {
        Reboot();
    }
    return ready > 0 && fds[1].revents != 0;
}

// The library removes itself from the environment, so programs that the daemon starts run without
// it.
std::string SimulatedTerminal::MonitorCommand() const {
    return std::string("/usr/bin/env LD_PRELOAD=") + kRedirectLibrary + " " + kMonitorProgram;
}

bool SimulatedTerminal::Signal(pid_t pid, int signal) {
    return Run("kill -" + std::to_string(signal) + " " + std::to_string(pid)).status == 0;
}

std::vector<Process> SimulatedTerminal::Processes(const std::string& name) const {
    std::vector<Process> processes;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(Path("/proc"), error)) {
        std::string line;
        std::getline(std::ifstream(entry.path() / "stat"), line);
        Process process;
        char itsName[16] = "";
        // Other entries, and processes that have just ended, give no such line.
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

}  // namespace Terminals::Simulated
