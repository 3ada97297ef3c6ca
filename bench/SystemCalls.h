#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "bench/BenchTerminal.h"

namespace Bench {

// The system calls of one check of that process, each with the path that it opens or the amount
// of bytes that it moves, from a trace of a few seconds. Disturbs the process: to be done when
// everything else has been measured. Empty when the machine has no strace.
std::vector<std::string> TraceOneCheck(BenchTerminal& bench, pid_t pid);

}  // namespace Bench
