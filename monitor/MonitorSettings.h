#pragma once

#include <cstdint>
#include <string>

namespace Monitor {

// What the command line decides; fixed once it is parsed.
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

}  // namespace Monitor
