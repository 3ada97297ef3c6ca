// Syslog behind the log calls, and as an output sink.
#pragma once

#include "core/output/SysloggerWritable.h"

namespace Quenda {

// From now on the log calls reach syslog(3) too, with the facility LOG_DAEMON. `ident` is kept,
// not copied: it must live until syslog is closed. An open syslog is closed first, so the log
// calls never reach it twice. Closed again at process exit.
void OpenSyslog(const char* ident);
void CloseSyslog();
bool IsSyslogOpen();

// The process's syslog sink, made on first use and deleted at exit.
SysloggerWritable& SyslogSink();

}  // namespace Quenda
