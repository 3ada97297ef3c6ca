#pragma once

namespace Monitor {

// Registers the program's name and the build records of its libraries.
void RegisterVersion();

// Prints them to standard error.
void PrintVersion();

}  // namespace Monitor
