// Runs external commands and waits for them, without a time-out. Nothing is logged: the caller's
// output explains a failure, and the caller decides what to report.
//
// The command inherits all descriptors that are not close-on-exec. Signals that the process holds
// (core/signals) arrive during the waits.
#pragma once

#include <sys/types.h>

#include <string>

#include "core/buildinfo/BuildRecord.h"

namespace Quenda {

// Runs the command with "/bin/sh -c" and returns true only if it exits with 0. Its standard output
// and standard error are appended to `output` as they come, and a line that explains any other end.
// If there is no pipe or process for the command, that line replaces `output`. An empty command
// returns false at once and leaves `output` untouched.
//
// Returns when the command has ended and its output is closed. A background child of the command
// that keeps the output open keeps the caller waiting.
bool RunShellCommand(const std::string& command, std::string& output);

// The same for a program with its arguments, argv[0] included. Only the first 30 are passed. `argv`
// need not end with null.
bool RunExecCommand(const std::string& path, int argc, const char* const* argv,
                    std::string& output);

// Runs the command with system(3) and returns true only if it exits with 0. Captures no output.
bool RunSystemCommand(const std::string& command);

// Waits until that child of the caller has ended, even if signals interrupt the wait. Returns
// false, with errno set, if it cannot be waited for.
bool WaitForChild(pid_t child, int& status);

// Closes descriptors 3 to 1023. For a child between fork and exec.
void CloseInheritedDescriptors();

const BuildRecord& ShellBuildRecord();

}  // namespace Quenda
