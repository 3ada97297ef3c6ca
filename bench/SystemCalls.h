#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "bench/BenchTerminal.h"

namespace Bench {

// The system calls of one check of that process, from a trace of a few seconds, as strace prints
// them, without descriptors and contents. Tracing slows the process down: measure all else before.
std::vector<std::string> TraceOneCheck(BenchTerminal& bench, pid_t pid);

}  // namespace Bench
