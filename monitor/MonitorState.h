// The monitor's process-wide records, built before main. The signal handlers read them, too.
#pragma once

#include <cstdint>

#include "heartbeat/HeartbeatReadTimer.h"
#include "monitor/Judgement.h"
#include "monitor/MonitorSettings.h"

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

inline MonitorSettings settings;
inline MonitorStatistics statistics = {};
inline SupervisionState supervision = {};
inline Quenda::HeartbeatReadTimer heartbeatReader;

}  // namespace Monitor
