// The daemon's settings and the command line that makes them.
#pragma once

#include <cstdint>
#include <string>

namespace Monitor {

struct MonitorSettings {
    bool debug = false;
    uint32_t max_strikes = 3;  // one unhealthy check more reboots the terminal
    uint32_t heartbeat_timeout_sec = 60;
    std::string keldra_process_name = "keldra";
    std::string sshd_process_name = "sshd";
    std::string heartbeat_file = "/var/run/quenda/keldra.heartbeat";
    std::string service_script = "/usr/sbin/service";
    std::string sshd_service_name = "sshd";
    std::string led_control_script = "/usr/sbin/led_ctl.sh";
    std::string monitor_process_name = "keldra_monitor";
};

// This process's settings. They are built before main and do not change after the command line
// has been read.
inline MonitorSettings settings;

// The request of the command line.
enum class Request {
    kSupervise,
    kQuery,    // -i
    kVersion,  // -v
    kNothing,  // it has a mistake, which is on standard error
};

// Reads the options in the order given. Arguments after -i or -v are not read.
Request ParseCommandLine(int argc, char** argv, MonitorSettings& parsed);

// Logs a line at level 0, in debugging mode only.
void LogDebug(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Monitor
