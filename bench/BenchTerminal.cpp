#include "bench/BenchTerminal.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "bench/Report.h"

namespace Bench {

namespace fs = std::filesystem;

namespace {

fs::path OwnDirectory() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

Terminals::Simulated::TerminalOptions Describe(const std::string& library) {
    Terminals::Simulated::TerminalOptions options;
    options.redirectLibrary = OwnDirectory() / library;
    return options;
}

}  // namespace

BenchTerminal::BenchTerminal(const std::string& library) : terminal_(Describe(library)) {
    std::string reason;
    if (!terminal_.PowerOn(&reason)) {
        Fail("the terminal does not come up: " + reason);
    }
}

pid_t BenchTerminal::StartDaemon(const std::string& arguments) {
    const Terminals::CommandResult result = terminal_.StartMonitor(arguments);
    if (result.status != 0) {
        Fail("the daemon does not start: " + result.output);
    }
    return Pid("keldra_monitor");
}

pid_t BenchTerminal::Start(const std::string& program, const std::vector<std::string>& arguments) {
    std::error_code error;
    const std::string inside = "/tmp/" + program;
    fs::copy_file(OwnDirectory() / program, terminal_.Path(inside), error);
    std::string line = std::string("LD_PRELOAD=") + Terminals::kRedirectLibrary + " " + inside;
    for (const std::string& argument : arguments) {
        line += " " + argument;
    }
    const auto result = terminal_.Run(line + " >/dev/null 2>&1 &");
    if (error || result.status != 0) {
        Fail("cannot start " + program + ": " + error.message() + result.output);
    }
    Wait(0.1);  // the shell becomes the program
    return Pid(program);
}

pid_t BenchTerminal::Pid(const std::string& name) const {
    const auto processes = terminal_.Processes(name);
    if (processes.empty()) {
        Fail("no process is called " + name);
    }
    return processes.front().pid;
}

std::string BenchTerminal::ReadProc(pid_t pid, const std::string& name) const {
    std::ifstream file(terminal_.Path("/proc/" + std::to_string(pid) + "/" + name));
    std::ostringstream text;
    text << file.rdbuf();
    if (text.str().empty()) {
        Fail("cannot read " + name + " of process " + std::to_string(pid));
    }
    return text.str();
}

long BenchTerminal::ProcNumber(pid_t pid, const std::string& name, const std::string& label) const {
    const std::string text = ReadProc(pid, name);
    const size_t at = text.find(label);
    if (at == std::string::npos) {
        Fail("no \"" + label + "\" in: " + text);
    }
    return strtol(text.c_str() + at + label.size(), nullptr, 10);
}

void BenchTerminal::Wait(double seconds) {
    for (double end = terminal_.Seconds() + seconds; terminal_.Seconds() < end;) {
        terminal_.Pump(static_cast<int>((end - terminal_.Seconds()) * 1000) + 1);
    }
}

}  // namespace Bench
