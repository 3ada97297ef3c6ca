// The status report: the monitor's settings, counters, state, heartbeat reader and event loop as
// plain text. Operators and their scripts read it, so its lines never change.
#pragma once

#include <string>

#include "core/output/Writable.h"

namespace Monitor {

// Holds the latest report.
constexpr char kStatusFile[] = "/var/run/quenda/keldra_monitor_status.log";

void WriteStatusReport(Quenda::Writable* out);

// Whether the text is a report with its end, and with nothing after it.
bool IsWholeReport(const std::string& text);

// Opens the status file, with O_RDONLY or O_WRONLY and further flags. Refuses anything but a
// regular file with one link: no link is followed, no pipe blocks, no other file is overwritten.
// Returns -1, with errno set, on failure.
int OpenStatusFile(int flags);

// Writes the report to the status file, anew. A failure to open the file is logged.
void UpdateStatusFile();

}  // namespace Monitor
