#pragma once

#include <cstdarg>

namespace Quenda {

// openlog(3) for the facility LOG_DAEMON, and closelog(3). `ident` is kept, not copied.
void OpenSystemLogger(const char* ident);
void CloseSystemLogger();

// Sends a line with syslog(3), unless the system logger would keep the process waiting. Its queue
// stays full once it no longer reads: after a second lines are then lost, and the first one that
// gets through again is preceded by a notice of how many. A logger of the old kind, which listens
// for streams, cannot be asked: syslog(3) waits for it. `arguments` is left as it was found.
void SendToSyslog(int priority, const char* format, va_list arguments)
    __attribute__((format(printf, 2, 0)));
void SendToSyslog(int priority, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace Quenda
