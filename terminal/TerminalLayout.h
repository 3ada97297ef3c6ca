#pragma once

namespace Terminals {

// The terminal's own files.
constexpr char kKeldraProgram[] = "/usr/sbin/keldra";
constexpr char kMonitorProgram[] = "/usr/sbin/keldra_monitor";
constexpr char kHeartbeatFile[] = "/var/run/quenda/keldra.heartbeat";
constexpr char kStatusFile[] = "/var/run/quenda/keldra_monitor_status.log";
constexpr char kPrimaryOptions[] = "/sysopt/config/sat_router/keldra.json";
constexpr char kBackupOptions[] = "/sysopt/config/sat_router/keldra.json.bak";

// Files that the simulator adds.
constexpr char kRedirectLibrary[] = "/run/simulator/libcpld_redirect.so";
// Receives log lines, and reports of the stand-ins and the redirect library: the name of the
// sender, a blank, a text. One socket for all keeps them in order.
constexpr char kSyslogSocket[] = "/dev/log";
// Written by the first process as soon as it runs.
constexpr char kFirstProcessRuns[] = "the first process runs\n";
// Watches the launcher of the user's own Keldra.
constexpr char kLauncherWatch[] = "/run/simulator/launcher_watch.sh";
// A file with this name and the PID appended orders that Keldra to misbehave.
constexpr char kKeldraOrder[] = "/run/simulator/keldra.order.";
// While this file is not empty, a starting Keldra waits.
constexpr char kKeldraWaits[] = "/run/simulator/keldra.waits";
// While this file is not empty, a starting stand-in Keldra ends with status 3.
constexpr char kKeldraRefuses[] = "/run/simulator/keldra.fails";

}  // namespace Terminals
