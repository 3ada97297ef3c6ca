#include "simulator/Faults.h"

#include "simulator/TerminalLayout.h"

namespace Simulator {
namespace {

const struct {
    KeldraFault fault;
    const char* signal;  // what causes it in any program, null when nothing does
    const char* order;   // what the stand-in understands, null when a signal is used
    const char* text;
} kFaults[] = {
    {KeldraFault::kHang, "STOP", "hang", "Keldra is stopped (SIGSTOP)"},
    {KeldraFault::kCrash, "KILL", nullptr, "Keldra crashes now"},
    {KeldraFault::kError, nullptr, "error", "report an error"},
    {KeldraFault::kShortFile, nullptr, "short", "write a short heartbeat file"},
    {KeldraFault::kMissingFile, nullptr, "missing", "remove its heartbeat file"},
    {KeldraFault::kIgnoreQuit, nullptr, "ignore", "ignore SIGQUIT"},
};

// Runs a command of the shell for every process of that name, whose PID is then $pid. False when
// there is none.
bool ForEach(Terminal* terminal, const std::string& name, const std::string& command) {
    const std::string script =
        "found=1\n"
        "for process in /proc/[0-9]*; do\n"
        "  read -r name <$process/comm && [ \"$name\" = " +
        name +
        " ] || continue\n"
        "  pid=${process#/proc/} found=0\n  " +
        command +
        "\n"
        "done\n"
        "exit $found\n";
    return terminal->RunScript(script).status == 0;
}

bool Runs(Terminal* terminal, const std::string& name) {
    return ForEach(terminal, name, ":");
}

void PutInto(Terminal* terminal, const std::string& path, const std::string& text) {
    (void)terminal->RunScript("echo '" + text + "' >" + path);
}

}  // namespace

std::string Cause(Terminal* terminal, KeldraFault fault) {
    if (!Runs(terminal, "keldra")) {
        return "Keldra is not running";
    }
    for (const auto& entry : kFaults) {
        if (entry.fault != fault) {
            continue;
        }
        const bool ordered = terminal->HasStandInKeldra() && entry.order != nullptr;
        if (!ordered && entry.signal == nullptr) {
            return std::string("your own program cannot be told to ") + entry.text;
        }
        if (!ordered) {
            terminal->Note(entry.text);
        }
        const std::string command = ordered
                                        ? std::string("echo ") + entry.order + " >" + kKeldraOrder
                                        : std::string("kill -") + entry.signal + " ";
        (void)ForEach(terminal, "keldra", command + "$pid");
    }
    return "";
}

std::string KillSshd(Terminal* terminal) {
    if (!Runs(terminal, "sshd")) {
        return "sshd is not running";
    }
    terminal->Note("sshd dies now");
    (void)ForEach(terminal, "sshd", "kill -KILL $pid");
    return "";
}

void RefuseToStart(Terminal* terminal) {
    terminal->Note("from now on Keldra cannot start");
    // Without the right to be executed, no program starts, the user's own included.
    if (terminal->HasStandInKeldra()) {
        PutInto(terminal, kKeldraRefuses, "3");
    } else {
        (void)terminal->RunScript(std::string("chmod 0 ") + kKeldraProgram);
    }
}

void DamagePrimaryOptions(Terminal* terminal) {
    terminal->Note("the primary options file is damaged now");
    PutInto(terminal, kPrimaryOptions, "damaged");
}

void Repair(Terminal* terminal) {
    terminal->Note("everything is repaired now");
    for (const char* file : {kKeldraRefuses, kServiceFails, kLedFails}) {
        (void)terminal->RunScript(std::string(": >") + file);
    }
    PutInto(terminal, kPrimaryOptions, "{ \"options\": \"primary\" }");
    if (!terminal->HasStandInKeldra()) {
        (void)terminal->RunScript(std::string("chmod 755 ") + kKeldraProgram);
    }
}

}  // namespace Simulator
