// The monitor's operations on other processes. Each one returns when it is done and logs its own
// failure. No failure ends the monitor: the next check tries again.
#pragma once

#include <cstdint>
#include <string>

#include "monitor/Judgement.h"

namespace Monitor {

// The path of Keldra's options file of that type, null for an unknown type.
const char* OptionsFile(OptionsType type);

// Chooses the first of the primary, the backup and the factory options file that exists, and logs
// the choice. False when there is none.
bool ChooseOptionsFile(OptionsType& type);

// Starts Keldra, "/usr/sbin/" + name, with that options file, or without any if it is null.
// Keldra detaches itself: this waits for the launched process and judges its exit status. If Keldra
// never detaches, the monitor waits until the watchdog reboots the terminal.
bool StartKeldra(const std::string& processName, const char* optionsFile);

// Signals every process of that name, then pauses for a second. `pid` is only logged.
bool SignalKeldra(const std::string& processName, int32_t pid, int signal);

bool StartSshd(const std::string& serviceScript, const std::string& serviceName);

// Sets the terminal's LEDs to error. Other software on the terminal sets them back.
bool SetLedsToError(const std::string& ledControlScript);

}  // namespace Monitor
