#pragma once

namespace Terminals {

// The terminal's own files.
constexpr char kKeldraProgram[] = "/usr/sbin/keldra";
constexpr char kMonitorProgram[] = "/usr/sbin/keldra_monitor";
constexpr char kHeartbeatFile[] = "/var/run/quenda/keldra.heartbeat";
constexpr char kStatusFile[] = "/var/run/quenda/keldra_monitor_status.log";
constexpr char kPrimaryOptions[] = "/sysopt/config/sat_router/keldra.json";
constexpr char kBackupOptions[] = "/sysopt/config/sat_router/keldra.json.bak";
constexpr char kFactoryOptions[] = "/sysopt/factory/keldra_factory.json";

// What the simulator adds.
constexpr char kRedirectLibrary[] = "/run/simulator/libcpld_redirect.so";
// Beside log lines, the syslog socket takes in what the stand-ins and the redirect library have
// to report: who, a blank, what. One socket for all keeps everything in its order.
constexpr char kSyslogSocket[] = "/dev/log";
// What the first process writes when it runs.
constexpr char kFirstProcessRuns[] = "the first process runs\n";
// Watches the launcher of a Keldra of the user's.
constexpr char kLauncherWatch[] = "/run/simulator/launcher_watch.sh";
// A file of this name with the PID appended orders that Keldra to misbehave.
constexpr char kKeldraOrder[] = "/run/simulator/keldra.order.";
// While this holds anything, a Keldra that is started waits.
constexpr char kKeldraWaits[] = "/run/simulator/keldra.waits";
// While this holds an exit status, the stand-in Keldra fails with it.
constexpr char kKeldraRefuses[] = "/run/simulator/keldra.fails";

}  // namespace Terminals
