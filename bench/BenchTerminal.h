#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "simulator/SimulatedTerminal.h"

namespace Bench {

// A simulated terminal whose watchdog files add nothing to the cost of what uses them.
// Every operation ends the program with a message when it fails: there is nothing to measure then.
class BenchTerminal {
public:
    BenchTerminal();

    Simulator::SimulatedTerminal& Terminal() { return terminal_; }

    // Runs a program of the benchmarks inside, with the redirection of the watchdog's files, until
    // it ends or goes into the background. Returns its output.
    std::string Run(const std::string& program, const std::vector<std::string>& arguments);
    // The one process inside with this command name.
    pid_t Pid(const std::string& name) const;
    // The file of that name below /proc/PID, as seen inside.
    std::string ReadProc(pid_t pid, const std::string& name) const;

private:
    Simulator::SimulatedTerminal terminal_;
};

[[noreturn]] void Fail(const std::string& reason);

// The number after `label` in `text`; fails when there is none.
long NumberAfter(const std::string& text, const std::string& label);

}  // namespace Bench
