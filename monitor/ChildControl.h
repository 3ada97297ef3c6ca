// What the monitor does to other processes. Each operation waits until it is done and logs its
// own failure; a failure is never the end of the monitor, the next check tries again.
#pragma once

#include <string>

#include "monitor/Judgement.h"

namespace Monitor {

// Keldra's options files, which only Keldra reads.
constexpr char kPrimaryOptionsFile[] = "/sysopt/config/sat_router/keldra.json";
constexpr char kBackupOptionsFile[] = "/sysopt/config/sat_router/keldra.json.bak";
constexpr char kFactoryOptionsFile[] = "/sysopt/factory/keldra_factory.json";

// Starts Keldra, "/usr/sbin/" + name, with the options file of that type, and counts the start.
// Keldra detaches itself: this waits for the launched process and judges its exit status. One
// that never detaches keeps the monitor waiting until the watchdog reboots the terminal.
bool StartKeldra(const std::string& processName, OptionsType optionsType);

// Signals every process of that name, then pauses for a second.
bool SignalKeldra(const std::string& processName, int signal);

bool StartSshd(const std::string& serviceName);

// Sets the terminal's LEDs to error. Other software on the terminal sets them back.
bool SetLedsToError();

}  // namespace Monitor
