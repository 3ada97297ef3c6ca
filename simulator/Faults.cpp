#include "simulator/Faults.h"

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>

namespace Simulator {
namespace {

const struct {
    KeldraFault fault;
    int signal;         // what causes it in any program, 0 when nothing does
    const char* order;  // what the stand-in understands, null when a signal is used
    const char* text;
} kFaults[] = {
    {KeldraFault::kHang, SIGSTOP, "hang", "Keldra is stopped (SIGSTOP)"},
    {KeldraFault::kCrash, SIGKILL, nullptr, "Keldra crashes now"},
    {KeldraFault::kError, 0, "error", "report an error"},
    {KeldraFault::kShortFile, 0, "short", "write a short heartbeat file"},
    {KeldraFault::kMissingFile, 0, "missing", "remove its heartbeat file"},
    {KeldraFault::kIgnoreQuit, 0, "ignore", "ignore SIGQUIT"},
};

bool IsStandIn(const SimulatedTerminal& terminal) {
    return terminal.Options().keldraProgram.empty();
}

// Complete before it gets the name that Keldra looks for.
bool GiveOrder(const SimulatedTerminal& terminal, pid_t pid, const std::string& order) {
    const std::string path = kKeldraOrder + std::to_string(pid);
    return WriteInside(terminal, path + ".new", order) &&
           rename(terminal.Path(path + ".new").c_str(), terminal.Path(path).c_str()) == 0;
}

}  // namespace

std::string Cause(SimulatedTerminal* terminal, KeldraFault fault) {
    const auto running = terminal->Processes("keldra");
    if (running.empty()) {
        return "Keldra is not running";
    }
    for (const auto& entry : kFaults) {
        if (entry.fault != fault) {
            continue;
        }
        const bool ordered = IsStandIn(*terminal) && entry.order != nullptr;
        if (!ordered && entry.signal == 0) {
            return std::string("your own program cannot be told to ") + entry.text;
        }
        if (!ordered) {
            terminal->Note(entry.text);
        }
        for (const auto& process : running) {
            (void)(ordered ? GiveOrder(*terminal, process.pid, entry.order)
                           : terminal->Signal(process.pid, entry.signal));
        }
    }
    return "";
}

std::string KillSshd(SimulatedTerminal* terminal) {
    const auto running = terminal->Processes("sshd");
    if (running.empty()) {
        return "sshd is not running";
    }
    terminal->Note("sshd dies now");
    for (const auto& process : running) {
        (void)terminal->Signal(process.pid, SIGKILL);
    }
    return "";
}

void RefuseToStart(SimulatedTerminal* terminal) {
    terminal->Note("from now on Keldra cannot start");
    // Without the right to be executed, no program starts, the user's own included.
    if (IsStandIn(*terminal)) {
        (void)WriteInside(*terminal, kKeldraRefuses, "3\n");
    } else {
        (void)chmod(terminal->Path(kKeldraProgram).c_str(), 0);
    }
}

void DamagePrimaryOptions(SimulatedTerminal* terminal) {
    terminal->Note("the primary options file is damaged now");
    (void)WriteInside(*terminal, kPrimaryOptions, "\xff\xff damaged\n");
}

void Repair(SimulatedTerminal* terminal) {
    terminal->Note("everything is repaired now");
    (void)unlink(terminal->Path(kKeldraRefuses).c_str());
    (void)unlink(terminal->Path(kServiceFails).c_str());
    (void)unlink(terminal->Path(kLedFails).c_str());
    (void)chmod(terminal->Path(kKeldraProgram).c_str(), 0755);
    (void)WriteInside(*terminal, kPrimaryOptions, "{ \"options\": \"primary\" }\n");
}

bool WriteInside(const SimulatedTerminal& terminal, const std::string& path,
                 const std::string& content) {
    std::ofstream file(terminal.Path(path), std::ios::binary);
    file << content << std::flush;
    return file.good();
}

}  // namespace Simulator
