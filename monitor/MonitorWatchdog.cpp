#include "monitor/MonitorWatchdog.h"

#include "core/log/Log.h"
#include "watchdog/WatchdogDevice.h"

namespace Monitor {

uint32_t ArmWatchdog(uint32_t biteSeconds) {
    static const Quenda::WatchdogControl control;
    char message[54] = "";
    const uint32_t code = Quenda::wdStart(control, biteSeconds, message, sizeof(message));
    if (code != Quenda::WD_DB_OK) {
        Quenda::LogMessage(0, "%s\n", message);
    }
    return code;
}

}  // namespace Monitor
