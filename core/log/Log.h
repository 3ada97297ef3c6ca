// The process's log calls. A line is exactly what the format yields, its "\n" included: no
// prefix and no time stamp is added (syslog adds its own).
//
// Lines go to standard error, flushed at once, and after `OpenSyslog` (core/log/Syslog.h) to
// syslog as well.
#pragma once

#include <cstdarg>

namespace Quenda {

// For system calls that failed, and for the event loop's end. Reaches syslog as LOG_ERR.
void LogError(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Level 0 (all the monitor's own messages) reaches syslog as LOG_NOTICE. Any other level reaches
// standard error only: this is meant so, and keeps detail out of the terminal's syslog.
void LogMessage(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Where the log calls end: one hook for each. A hook that replaces another calls the one that it
// replaced, with an argument list of its own.
struct LogHooks {
    void (*plain)(const char* format, va_list arguments);
    void (*levelled)(int level, const char* format, va_list arguments);
};

// The hooks in force; both write to standard error at first.
LogHooks& CurrentLogHooks();

}  // namespace Quenda
