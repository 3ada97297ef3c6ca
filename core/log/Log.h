// The process's log calls. A line is exactly what the format yields, its "\n" included: no
// prefix and no time stamp is added (syslog adds its own).
//
// Lines go to standard error, flushed at once, and after `OpenSyslog` (core/log/Syslog.h) to
// syslog as well.
#pragma once

#include <cstdarg>

namespace Quenda {

// For system calls that failed and for the end of the event loop. Reaches syslog as LOG_ERR.
void LogError(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Level 0 (all messages of the monitor) reaches syslog as LOG_NOTICE. Other levels reach only
// standard error, on purpose: the terminal's syslog is kept free of details.
void LogMessage(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

// `LogError` calls `plain`, `LogMessage` calls `levelled`. Arguments can be read only once: a hook
// that also calls the hook that it replaced must give that one a copy of them (va_copy).
struct LogHooks {
    void (*plain)(const char* format, va_list arguments);
    void (*levelled)(int level, const char* format, va_list arguments);
};

// The hooks in force; both write to standard error at first.
LogHooks& CurrentLogHooks();

}  // namespace Quenda
