#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Terminals {

// Starts a program of the host in its own session, in the root directory, with a fixed environment.
// Its standard output and error go to `output`. Its standard input is `input`, or /dev/null for -1.
// It inherits no other descriptor, and it is killed when this process ends.
// Returns its PID, or -1 if fork fails. If the program cannot be executed, its status is 127.
pid_t Spawn(const std::vector<std::string>& command, int output, int input = -1);

}  // namespace Terminals
