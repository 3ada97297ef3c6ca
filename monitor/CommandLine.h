#pragma once

#include "monitor/MonitorSettings.h"

namespace Monitor {

// What the command line asks for.
enum class Request {
    kSupervise,
    kQuery,    // -i
    kVersion,  // -v
    kNothing,  // it holds a mistake, which has been printed to standard error
};

// Reads the options into the settings, in the order given. What follows -i or -v is not read.
Request ParseCommandLine(int argc, char** argv, MonitorSettings& settings);

}  // namespace Monitor
