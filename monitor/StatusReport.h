// The status report: the monitor's settings, counters, state, heartbeat reader and event loop as
// plain text. Operators and their scripts read it, so its lines never change.
#pragma once

#include <cstdio>

namespace Monitor {

void WriteStatusReport(FILE* stream);

// Writes the report to the status file, anew. A failure to open the file is logged.
void UpdateStatusFile();

}  // namespace Monitor
