#include "monitor/MonitorState.h"

namespace Monitor {

MonitorSettings settings;
MonitorStatistics statistics = {};
SupervisionState supervision = {};
Quenda::HeartbeatReadTimer heartbeatReader;

}  // namespace Monitor
