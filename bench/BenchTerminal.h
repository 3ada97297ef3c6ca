#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "terminal/simulated/SimulatedTerminal.h"

namespace Bench {

// A simulated terminal with a preloaded library of ours in place of the simulator's, which tells
// of every write and so would be measured as well.
// Every operation ends the program with a message when it fails: there is nothing to measure then.
class BenchTerminal {
public:
    // `library`: its file name.
    explicit BenchTerminal(const std::string& library);

    Terminals::Simulated::SimulatedTerminal& Terminal() { return terminal_; }

    // Starts the daemon and returns its PID.
    pid_t StartDaemon(const std::vector<std::string>& arguments);
    // Starts a program of ours inside, with the library, and returns its PID.
    pid_t Start(const std::string& program, const std::vector<std::string>& arguments);
    // The oldest process with this command name.
    pid_t Pid(const std::string& name) const;
    // The file of that name below /proc/PID, as seen inside.
    std::string ReadProc(pid_t pid, const std::string& name) const;
    void Wait(double seconds);

private:
    Terminals::Simulated::SimulatedTerminal terminal_;
};

[[noreturn]] void Fail(const std::string& reason);

// The number after `label` in `text`; fails when there is none.
long NumberAfter(const std::string& text, const std::string& label);

}  // namespace Bench
