#include "monitor/HealthCheck.h"

#include <signal.h>

#include <cstdlib>
#include <new>

#include "core/log/Log.h"
#include "monitor/ChildControl.h"
#include "monitor/MonitorSettings.h"
#include "monitor/ProcessLookup.h"
#include "watchdog/WatchdogDevice.h"

namespace Monitor {

using Quenda::LogMessage;

namespace {

// Keeps the cached PID if a process with that PID and name runs, and searches for the name
// otherwise. True if the PID was kept.
bool RefreshPid(const std::string& name, int32_t& pid) {
    if (pid > 0 && IsProcessRunning(name.c_str(), pid)) {
        return true;
    }
    pid = FindProcessId(name.c_str());
    return false;
}

void ReportState() {
    switch (supervision.keldra_state) {
        case KeldraState::Keldra_State_Unknown:
            LogMessage(0, "Keldra's state could not be determined: %d\n", supervision.keldra_pid);
            ++statistics.keldra_state_unknown;
            break;
        case KeldraState::Keldra_Not_Running:
            LogMessage(0, "Keldra is not running!\n");
            ++statistics.keldra_not_running;
            break;
        case KeldraState::Keldra_In_Error_State:
            LogMessage(0, "Keldra is in error state\n");
            ++statistics.keldra_in_error_state;
            break;
        case KeldraState::Keldra_Missed_Heartbeat:
            LogMessage(0, "Keldra missed a heartbeat (last received: %u)\n",
                       heartbeatReader.GetLastCount());
            ++statistics.keldra_missed_heartbeat;
            break;
        case KeldraState::Keldra_Up_And_Okay:
            LogDebug("Keldra is up and okay\n");
            break;
    }
}

void ReportStrikes(const Judgement& judgement) {
    // Wraps at 32 bits on every processor, as on the terminal's.
    const uint32_t seconds = settings.heartbeat_timeout_sec * judgement.silentPeriods;
    if (supervision.keldra_state != KeldraState::Keldra_Up_And_Okay) {
        LogMessage(0, "Strike %u! Keldra has not responded for %zu seconds\n", supervision.strikes,
                   size_t{seconds});
    } else if (judgement.recovered) {
        // Deliberate: one period more than the strikes, since the last one, in which Keldra came
        // back, counts too.
        LogMessage(0, "Keldra started responding again after %zu seconds\n", size_t{seconds});
        ++statistics.keldra_recovered;
    }
}

// Leaves the terminal to the watchdog, which reboots it to its backup partition.
[[noreturn]] void Reboot() {
    LogMessage(0,
               "Maximum consecutive failure threshold exceeded. Rebooting the system to the backup "
               "partition.\n");
    (void)ArmWatchdog(kRebootBiteSeconds);
    try {
        (void)SetLedsToError(settings.led_control_script);
    } catch (const std::bad_alloc&) {
        LogMessage(0, "Out of memory: the LEDs are left as they are\n");
    }
    exit(0);
}

// Called before each start: one that fails counts, too.
void CountStart() {
    switch (supervision.options_type) {
        case OptionsType::Normal_Options:
            ++statistics.start_with_normal_options;
            break;
        case OptionsType::Backup_Options:
            ++statistics.start_with_backup_options;
            break;
        case OptionsType::Factory_Options:
            ++statistics.start_with_factory_options;
            break;
    }
}

void RestartKeldra() {
    if (supervision.keldra_state != KeldraState::Keldra_Not_Running) {
        (void)SignalKeldra(settings.keldra_process_name, supervision.keldra_pid, SIGQUIT);
    }
    (void)SetLedsToError(settings.led_control_script);
    CountStart();
    (void)StartKeldra(settings.keldra_process_name, OptionsFile(supervision.options_type));
}

bool CheckSshd() {
    if (RefreshPid(settings.sshd_process_name, supervision.sshd_pid)) {
        return true;
    }
    if (supervision.sshd_pid < 0) {
        LogMessage(0, "WARNING! The state of the SSH daemon could not be determined: %d\n",
                   supervision.sshd_pid);
        return false;
    }
    if (supervision.sshd_pid == 0) {
        LogMessage(0, "Starting the SSH daemon because it was not detected\n");
        const bool started = StartSshd(settings.service_script, settings.sshd_service_name);
        statistics.start_sshd += started ? 1 : 0;
        return started;
    }
    LogDebug("The SSH daemon is running, but its PID changed to %d since the last check\n",
             supervision.sshd_pid);
    return true;
}

bool Check(bool heartbeatRead) {
    (void)RefreshPid(settings.keldra_process_name, supervision.keldra_pid);
    const Judgement judgement =
        Judge({heartbeatRead, heartbeatReader.InErrorState(), heartbeatReader.HeartbeatMissed()},
              settings.max_strikes, supervision);
    supervision = judgement.supervision;
    ReportState();
    ReportStrikes(judgement);
    if (judgement.reboot) {
        Reboot();
    }
    (void)ArmWatchdog(kBiteSeconds);  // logs its own failure; the next check tries again
    if (supervision.keldra_state != KeldraState::Keldra_Up_And_Okay) {
        RestartKeldra();
    }
    return CheckSshd();
}

}  // namespace

uint32_t ArmWatchdog(uint32_t biteSeconds) {
    static const Quenda::WatchdogControl control;
    char message[54] = "";
    const uint32_t code = Quenda::wdStart(control, biteSeconds, message, sizeof(message));
    if (code != Quenda::WD_DB_OK) {
        LogMessage(0, "%s\n", message);
    }
    return code;
}

bool CheckHealth(bool heartbeatRead) {
    try {
        return Check(heartbeatRead);
    } catch (const std::bad_alloc&) {
        // The check stops where the allocation failed, possibly before it re-armed the watchdog.
        LogMessage(0, "Out of memory: this check is given up, the next one tries again\n");
        return false;
    }
}

}  // namespace Monitor
