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

    // Runs a program of the benchmarks inside, with the redirection of the watchdog's files.
    // Returns its output.
    std::string Run(const std::string& program, const std::vector<std::string>& arguments);
    // The same without waiting for its end.
    void Start(const std::string& program, const std::vector<std::string>& arguments);
    // The one process inside with this command name.
    pid_t Pid(const std::string& name) const;
    // The file of that name below /proc/PID, as seen inside.
    std::string ReadProc(pid_t pid, const std::string& name) const;

private:
    // Copies the program into the terminal. Returns the command line that runs it there.
    std::vector<std::string> Install(const std::string& program,
                                     const std::vector<std::string>& arguments);
    std::string RunInside(const std::vector<std::string>& command);

    Simulator::SimulatedTerminal terminal_;
};

[[noreturn]] void Fail(const std::string& reason);

// The number after `label` in `text`; fails when there is none.
long NumberAfter(const std::string& text, const std::string& label);

}  // namespace Bench
