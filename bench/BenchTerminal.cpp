#include "bench/BenchTerminal.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Bench {

namespace fs = std::filesystem;
using Simulator::TerminalOptions;

namespace {

constexpr char kInside[] = "/tmp/";

fs::path OwnDirectory() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

TerminalOptions Describe() {
    const fs::path build = OwnDirectory().parent_path();
    TerminalOptions options;
    options.monitorProgram = build / "monitor" / "keldra_monitor";
    options.standInDirectory = build / "simulator";
    options.redirectLibrary = OwnDirectory() / "libopen_redirect.so";
    return options;
}

}  // namespace

void Fail(const std::string& reason) {
    (void)fprintf(stderr, "terminal_bench: %s\n", reason.c_str());
    exit(2);
}

long NumberAfter(const std::string& text, const std::string& label) {
    const size_t at = text.find(label);
    if (at == std::string::npos) {
        Fail("no \"" + label + "\" in: " + text);
    }
    return strtol(text.c_str() + at + label.size(), nullptr, 10);
}

BenchTerminal::BenchTerminal() : terminal_(Describe()) {
    std::string reason;
    if (!terminal_.PowerOn(&reason)) {
        Fail("the terminal does not come up: " + reason);
    }
}

std::vector<std::string> BenchTerminal::Install(const std::string& program,
                                                const std::vector<std::string>& arguments) {
    std::error_code error;
    const std::string inside = kInside + program;
    fs::copy_file(OwnDirectory() / program, terminal_.Path(inside),
                  fs::copy_options::overwrite_existing, error);
    if (error) {
        Fail("cannot install " + program + ": " + error.message());
    }
    std::vector<std::string> command = {
        "/usr/bin/env", std::string("LD_PRELOAD=") + Simulator::kRedirectLibrary, inside};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

std::string BenchTerminal::RunInside(const std::vector<std::string>& command) {
    const Simulator::CommandResult result = terminal_.Run(command);
    if (result.status != 0) {
        Fail(command.back() + " failed: " + result.output);
    }
    return result.output;
}

std::string BenchTerminal::Run(const std::string& program,
                               const std::vector<std::string>& arguments) {
    return RunInside(Install(program, arguments));
}

void BenchTerminal::Start(const std::string& program, const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& word : Install(program, arguments)) {
        line += word + " ";
    }
    (void)RunInside({"/bin/sh", "-c", line + ">/dev/null 2>&1 &"});
}

pid_t BenchTerminal::Pid(const std::string& name) const {
    const auto processes = terminal_.Processes(name);
    if (processes.size() != 1) {
        Fail(std::to_string(processes.size()) + " processes are called " + name);
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

}  // namespace Bench
