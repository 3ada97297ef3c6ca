// Finds and signals processes by their names, through /proc (proc(5)). A name is the kernel's
// command name, at most 15 characters, compared exactly; every question is answered afresh.
// Nothing here logs: callers report.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Monitor {

constexpr size_t kProcessNameSize = 256;

// The process's name and its parent, from /proc/PID/stat. False when there is no such process or
// its line cannot be parsed. A name that itself holds ")" is cut there.
bool ReadProcessStat(int32_t pid, char (&name)[kProcessNameSize], int32_t& parentPid);
// The same from a stat line, of which the first 127 bytes are looked at.
bool ParseProcessStat(const char* line, char (&name)[kProcessNameSize], int32_t& parentPid);
// When the process was started, in clock ticks since the boot. False when that cannot be read.
bool ReadStartTime(int32_t pid, uint64_t& ticks);

// All processes of that name, in the order of the directory. False when /proc cannot be opened,
// and for null.
bool CollectProcessIds(const char* name, std::vector<int32_t>& pids);

// The first process of that name; the first that is not the caller. 0: none, -1: unknown.
int32_t FindProcessId(const char* name);
int32_t FindOtherProcessId(const char* name);

// Whether that process still bears that name: one file is read, where a search reads them all.
bool IsProcessRunning(const char* name, int32_t pid);

// Signals every process of that name, the caller itself last, then pauses for a second so that
// they can end. A process that has gone meanwhile is no failure. False when one could not be
// signalled and, without the pause, when there was none.
bool SignalProcessesByName(const char* name, int signal);

}  // namespace Monitor
