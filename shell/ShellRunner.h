// Runs external commands and waits for them, without a time-out. Nothing here logs: a failure is
// explained in the caller's output, and the caller decides what to report.
//
// Descriptors that are not close-on-exec reach the command. Signals that the process holds
// (core/signals) arrive during the waits.
#pragma once

#include <sys/types.h>

#include <string>

namespace Quenda {

// Runs the command with "/bin/sh -c". `output` gains what the command wrote to standard output
// and standard error, in the order in which it came, and a line for any end but exit 0; when
// there could be no command at all (no pipe, no process), that line replaces `output`.
// True only for exit 0. An empty command is false at once, with `output` untouched.
//
// Returns when the command has ended and its output is closed: a background child of the command
// that keeps its output open keeps the caller waiting.
bool RunShellCommand(const std::string& command, std::string& output);

// The same for a program with its arguments, argv[0] included; of more than 30 only the first
// 30 are passed. The vector need not end with null.
bool RunExecCommand(const std::string& path, int argc, const char* const* argv,
                    std::string& output);

// Runs the command with system(3). True only for exit 0; nothing is captured.
bool RunSystemCommand(const std::string& command);

// Waits until that child of the caller has ended, through interruptions. False, with errno set,
// when it cannot be waited for.
bool WaitForChild(pid_t child, int& status);

// Closes descriptors 3 to 1023. For a child between fork and exec.
void CloseInheritedDescriptors();

}  // namespace Quenda
