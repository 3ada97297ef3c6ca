#include "simulator/SimulatedTerminal.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <sstream>

#include "simulator/FirstProcess.h"
#include "simulator/Namespaces.h"

namespace Simulator {
namespace {

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
        "/usr/bin/env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
        "ASAN_OPTIONS=verify_asan_link_order=0:log_path=/tmp/sanitizer",
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
