#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "bench/BenchTerminal.h"

namespace Bench {

// The system calls of one check of that process, from a trace of a few seconds: all that strace
// shows of them but descriptors and contents. Disturbs the process: to be done when everything
// else has been measured.
std::vector<std::string> TraceOneCheck(BenchTerminal& bench, pid_t pid);

}  // namespace Bench
