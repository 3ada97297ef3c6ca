// Well-known paths of the terminal.
#pragma once

namespace Monitor {

constexpr char kWorkingDirectory[] = "/var/run/quenda";
constexpr char kStatusFile[] = "/var/run/quenda/keldra_monitor_status.log";
constexpr char kProgramDirectory[] = "/usr/sbin/";

// Keldra's options files; only Keldra reads them.
constexpr char kPrimaryOptionsFile[] = "/sysopt/config/sat_router/keldra.json";
constexpr char kBackupOptionsFile[] = "/sysopt/config/sat_router/keldra.json.bak";
constexpr char kFactoryOptionsFile[] = "/sysopt/factory/keldra_factory.json";

}  // namespace Monitor
