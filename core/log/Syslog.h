// Syslog behind the log calls and as an output sink, which options can switch on.
#pragma once

#include <cstddef>

#include "core/output/Writable.h"

namespace Quenda {

class OptionsNode;
class TraceList;

// From now on the log calls reach the system logger too, with the facility LOG_DAEMON. `ident` is
// kept, not copied: it must live until syslog is closed. An open syslog is closed first, so the
// log calls never reach it twice. Closed again at process exit.
//
// A system logger that is absent or does not read costs lines, never the process. While its queue
// is full, lines wait for room: all together one second at most, until one goes through at once.
// The first line that arrives again is preceded by a notice of how many were lost. Only a logger
// that listens for streams is reached through syslog(3), which waits for it without a limit.
//
// Lines have the ident and the facility from here, not those of the program's own openlog(3).
void OpenSyslog(const char* ident);
void CloseSyslog();
bool IsSyslogOpen();

// Sends every piece written to it as one record, in the form of syslog(3), with the facility
// LOG_DAEMON and the priority LOG_ERR: a dump yields one record for each write, a lone "\n"
// included. While syslog is not open, the ident is the program's name. Writes return `length`.
class SysloggerWritable : public Writable {
public:
    using Writable::Write;
    size_t Write(const void* data, size_t length) override;
};

// The process's syslog sink, made on first use and deleted at exit.
SysloggerWritable& SyslogSink();

// Puts that sink into the trace list, or takes it out, as the options say: "syslogger_on" (boolean)
// and "syslogger_level" (integer, 5 when it is missing). Changes nothing when the node is null or
// empty, or "syslogger_on" is missing or cannot be read.
void ApplySysloggerOptions(TraceList& list, const OptionsNode* options);

}  // namespace Quenda
