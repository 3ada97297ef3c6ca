#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Simulator {

// Starts a program of the machine in a session of its own, with the environment of a terminal and
// nothing of the simulator's open: standard output and error go to `output`. Where there is no
// such program the process ends with 127. Returns its PID, or -1.
pid_t Spawn(const std::vector<std::string>& command, int output);

// Everything that can be read from `fd` until its end or, when it does not wait, until now.
std::string ReadAvailable(int fd);

}  // namespace Simulator
