#pragma once

#include <optional>

#include "monitor/MonitorSettings.h"

namespace Monitor {

// Reads the options into the settings, in the order given; -i and -v are carried out on the spot.
// Returns the exit code when the process is to end now. Complaints go to standard error.
std::optional<int> ParseCommandLine(int argc, char** argv, MonitorSettings& settings);

}  // namespace Monitor
