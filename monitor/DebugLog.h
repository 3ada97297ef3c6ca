#pragma once

namespace Monitor {

// A log line at level 0 that is for the debugging mode only.
void LogDebug(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Monitor
