#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "terminal/simulated/SimulatedTerminal.h"

namespace Bench {

// A simulated terminal that preloads another library into the daemon: the usual one reports every
// write, and its work would be measured as well. If an operation fails, it ends the program.
class BenchTerminal {
public:
    // `library`: its file name.
    explicit BenchTerminal(const std::string& library);

    Terminals::Simulated::SimulatedTerminal& Terminal() { return terminal_; }

    // Starts the daemon and returns its PID.
    pid_t StartDaemon(const std::string& arguments);
    // Starts a program of this folder inside, with the library, and returns its PID.
    pid_t Start(const std::string& program, const std::vector<std::string>& arguments);
    // The oldest process with this command name.
    pid_t Pid(const std::string& name) const;
    // The file of that name below /proc/PID, as seen inside.
    std::string ReadProc(pid_t pid, const std::string& name) const;
    // The number behind a label in that file.
    long ProcNumber(pid_t pid, const std::string& name, const std::string& label) const;
    void Wait(double seconds);

private:
    Terminals::Simulated::SimulatedTerminal terminal_;
};

}  // namespace Bench
