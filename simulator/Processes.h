#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Simulator {

struct Process {
    pid_t pid = 0;
    pid_t parent = 0;
    char state = '?';  // the kernel's letter: R, S, T (stopped), Z (zombie) ...
    std::string name;  // the kernel's command name
};

// Every process that the proc file system mounted at `proc` shows, by rising PID.
std::vector<Process> ListProcesses(const std::string& proc);

}  // namespace Simulator
