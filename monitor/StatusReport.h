// The status report: the monitor's settings, counters, state, heartbeat reader and event loop as
// plain text. Operators and scripts read it, so its lines never change. The daemon writes it to the
// status file; a query, which is another process, asks for it and reads it there.
#pragma once

#include <string>

#include "core/output/Writable.h"

namespace Monitor {

void WriteStatusReport(Quenda::Writable* out);

// Whether the text has the end of a report, and nothing after it.
bool IsWholeReport(const std::string& text);

// Replaces the status file's content by a new report. A failure to open the file is logged.
void UpdateStatusFile();

// Asks the running instance for its status report and prints it on standard error, as well as any
// failure. Takes about 10 seconds at most: they are counted in polls.
void QueryStatus();

}  // namespace Monitor
