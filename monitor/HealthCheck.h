// The supervision of Keldra and sshd: its records, the watchdog that backs it, and the check.
#pragma once

#include <cstdint>

#include "heartbeat/HeartbeatReadTimer.h"
#include "monitor/Judgement.h"

namespace Monitor {

// Counters since the start, named as the status report shows them; never reset.
struct MonitorStatistics {
    uint32_t keldra_state_unknown;
    uint32_t keldra_not_running;
    uint32_t keldra_in_error_state;
    uint32_t keldra_missed_heartbeat;
    uint32_t keldra_recovered;
    uint32_t start_with_normal_options;
    uint32_t start_with_backup_options;
    uint32_t start_with_factory_options;
    uint32_t start_sshd;
};

// This process's records, built before main. The signal handlers read them, too.
inline MonitorStatistics statistics = {};
inline SupervisionState supervision = {};
inline Quenda::HeartbeatReadTimer heartbeatReader;

constexpr uint32_t kBiteSeconds = 300;       // the longest that the board offers
constexpr uint32_t kRebootBiteSeconds = 30;  // the shortest

// Arms or re-arms the board's watchdog; a failure is logged. Returns the code of wdStart.
uint32_t ArmWatchdog(uint32_t biteSeconds);

// One check, after a read of the heartbeat file; `heartbeatRead` is false if the read failed.
// Judges Keldra, re-arms the watchdog, restarts an unhealthy Keldra and starts a missing sshd.
// Returns whether sshd runs or could be started.
//
// When the strikes exceed the maximum, it exits the process, and the watchdog reboots the terminal.
// If memory runs out, it logs a line and stops where it is.
bool CheckHealth(bool heartbeatRead);

}  // namespace Monitor
