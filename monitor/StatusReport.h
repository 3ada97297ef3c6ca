// The status report: the monitor's settings, counters, state, heartbeat reader and event loop as
// plain text. Operators and their scripts read it, so its lines never change.
#pragma once

#include <cstdio>

namespace Monitor {

// The file of the report that was asked for last.
constexpr char kStatusFile[] = "/var/run/quenda/keldra_monitor_status.log";

void WriteStatusReport(FILE* stream);

// Writes the report to the status file, anew. A failure to open the file is logged.
void UpdateStatusFile();

}  // namespace Monitor
