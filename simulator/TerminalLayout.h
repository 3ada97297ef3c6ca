#pragma once

#include <string>

namespace Simulator {

// The terminal's own files.
constexpr char kKeldraProgram[] = "/usr/sbin/keldra";
constexpr char kMonitorProgram[] = "/usr/sbin/keldra_monitor";
constexpr char kHeartbeatFile[] = "/var/run/quenda/keldra.heartbeat";
constexpr char kStatusFile[] = "/var/run/quenda/keldra_monitor_status.log";
constexpr char kPrimaryOptions[] = "/sysopt/config/sat_router/keldra.json";
constexpr char kBackupOptions[] = "/sysopt/config/sat_router/keldra.json.bak";
constexpr char kFactoryOptions[] = "/sysopt/factory/keldra_factory.json";

// What the simulator adds. The redirect library turns "/proc/cpld/watchdog/" into this one.
constexpr char kWatchdogFiles[] = "/run/cpld/watchdog/";
constexpr char kRedirectLibrary[] = "/run/simulator/libcpld_redirect.so";
// Beside log lines, the syslog socket takes in what the stand-ins and the redirect library have
// to report: who, a blank, what. One socket for all keeps everything in its order.
constexpr char kSyslogSocket[] = "/dev/log";
// Reports its arguments; for scripts.
constexpr char kAnnounceProgram[] = "/run/simulator/announce";
// The stand-in Keldra's heartbeat period in milliseconds and the byte order of its count.
constexpr char kKeldraSettings[] = "/run/simulator/keldra.settings";
// A file of this name with the PID appended orders that Keldra to misbehave.
constexpr char kKeldraOrder[] = "/run/simulator/keldra.order.";
// While these exist, the stand-in of that name fails; the content is its exit status.
constexpr char kKeldraRefuses[] = "/run/simulator/keldra.fails";
constexpr char kServiceFails[] = "/run/simulator/service.fails";
constexpr char kLedFails[] = "/run/simulator/led.fails";

// What the simulated terminal is made of; paths are the machine's.
struct TerminalOptions {
    std::string monitorProgram;  // the daemon
    // A package of the daemon, unpacked: its program is used in place of monitorProgram, and its
    // /etc/init.d and /etc/default instead of the machine's. Empty for none.
    std::string packageDirectory;
    std::string standInDirectory;  // the programs and scripts that stand in for the terminal's
    std::string keldraProgram;     // empty for the stand-in
    unsigned keldraPeriodMs = 100;
    bool bigEndianHeartbeat = false;
    // Words put before the daemon's command line, for one that needs an emulator. The words must
    // then see to it that the redirect library is loaded.
    std::string monitorWrapper;
    // Empty for the one among the stand-ins, which suits a daemon of the machine's own kind.
    std::string redirectLibrary;
};

}  // namespace Simulator
