#include "terminal/Faults.h"

#include "terminal/TerminalLayout.h"

namespace Terminals {
namespace {

// Adds the note, unless it is empty, and runs a shell command for every process of that name, with
// its PID in $pid.
std::string ForEach(Terminal* terminal, const std::string& name, const std::string& command,
                    const std::string& note) {
    const std::string pids = terminal->Pids(name);
    if (pids.empty()) {
        return name + " is not running";
    }
    if (!note.empty()) {
        terminal->Note(note);
    }
    (void)terminal->Run("pids='" + pids + "'; for pid in $pids; do " + command + "; done");
    return "";
}

// Returns when a stand-in obeys. The daemon may end the one that got the order first, so the order
// is repeated to the present one.
std::string Order(Terminal* terminal, const std::string& fault) {
    const auto order = [&] {
        return ForEach(terminal, "keldra", "echo " + fault + " >" + kKeldraOrder + "$pid", "");
    };
    const std::string obstacle = order();
    const double deadline = terminal->Seconds() + 30;
    while (obstacle.empty() && !terminal->Await(Source::kKeldra, " now", 0.2)) {
        if (terminal->Seconds() > deadline || terminal->IsHopeless()) {
            return "keldra does not obey";
        }
        (void)order();
    }
    return obstacle;
}

std::string Change(Terminal* terminal, const std::string& note, const std::string& script) {
    terminal->Note(note);
    const CommandResult result = terminal->Run(script);
    return result.status == 0 ? "" : result.output;
}

}  // namespace

std::string Cause(Terminal* terminal, const std::string& fault) {
    if (fault == "crash") {
        return ForEach(terminal, "keldra", "kill -KILL $pid", "Keldra crashes now");
    }
    if (terminal->HasStandInKeldra()) {
        return Order(terminal, fault);
    }
    return fault == "hang"
               ? ForEach(terminal, "keldra", "kill -STOP $pid", "Keldra is stopped (SIGSTOP)")
               : "your own program takes no orders";
}

std::string KillSshd(Terminal* terminal) {
    return ForEach(terminal, "sshd", "kill -KILL $pid", "sshd dies now");
}

std::string RefuseToStart(Terminal* terminal) {
    // The user's own program is made not executable.
    return Change(terminal, "from now on Keldra cannot start",
                  terminal->HasStandInKeldra() ? std::string("echo refuse >") + kKeldraRefuses
                                               : std::string("chmod 0 ") + kKeldraProgram);
}

std::string DamagePrimaryOptions(Terminal* terminal) {
    return Change(terminal, "the primary options file is damaged now",
                  std::string("echo damaged >") + kPrimaryOptions);
}

std::string Repair(Terminal* terminal) {
    std::string script =
        terminal->HasStandInKeldra() ? "" : std::string("chmod 755 ") + kKeldraProgram + "\n";
    script += std::string(": >") + kKeldraRefuses + "\n";
    script += std::string("echo '{ \"options\": \"primary\" }' >") + kPrimaryOptions;
    return Change(terminal, "everything is repaired now", script);
}

}  // namespace Terminals
