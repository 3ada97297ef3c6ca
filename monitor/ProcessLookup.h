// Finds and signals processes by name, through /proc (proc(5)). The name is the kernel's command
// name of at most 15 characters; it must be equal. Nothing is cached, and nothing is logged:
// callers report failures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Monitor {

constexpr size_t kProcessNameSize = 256;

// The process's name and its parent, from /proc/PID/stat. False when there is no such process or
// its line cannot be parsed. The parser takes the first ")" as the end of the name: for a name that
// contains one, the result is mostly false.
bool ReadProcessStat(int32_t pid, char (&name)[kProcessNameSize], int32_t& parentPid);
// The same from a stat line; only its first 127 bytes count.
bool ParseProcessStat(const char* line, char (&name)[kProcessNameSize], int32_t& parentPid);
// When the process was started, in clock ticks since the boot. False when that cannot be read.
bool ReadStartTime(int32_t pid, uint64_t& ticks);

// All processes of that name, in the order of the directory. False when /proc cannot be opened,
// and for null.
bool CollectProcessIds(const char* name, std::vector<int32_t>& pids);

// The first process of that name; the first other than the caller. 0 if there is none, -1 if /proc
// cannot be read.
int32_t FindProcessId(const char* name);
int32_t FindOtherProcessId(const char* name);

// Whether that process runs and has that name. Reads one file; a search reads one for each process.
bool IsProcessRunning(const char* name, int32_t pid);

// Signals every process of that name, the caller itself last, then pauses for a second so that
// they can end. A process that has ended in the meantime is no failure. Returns false if one could
// not be signalled. If there is none, returns false without the pause.
bool SignalProcessesByName(const char* name, int signal);

}  // namespace Monitor
