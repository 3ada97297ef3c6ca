#pragma once

namespace Quenda {

class OptionsNode;
class TraceList;

// Puts the process's syslog sink into the trace list, or takes it out, as the options say:
// "syslogger_on" (boolean) and "syslogger_level" (integer, 5 when it is missing). Changes nothing
// when the node is null or empty, or "syslogger_on" is missing or cannot be read.
void ApplySysloggerOptions(TraceList& list, const OptionsNode* options);

}  // namespace Quenda
