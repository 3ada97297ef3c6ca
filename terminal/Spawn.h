#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Terminals {

// Starts a program of the host in its own session, in the root directory, with a plain environment.
// Its standard output and error go to `output`, its standard input comes from `input` or, without
// one, from /dev/null; it inherits no other descriptor. It is killed when this process ends.
// Returns its PID, or -1. If there is no such program, it ends with 127.
pid_t Spawn(const std::vector<std::string>& command, int output, int input = -1);

}  // namespace Terminals
