#include "monitor/Version.h"

#include "core/buildinfo/BuildInfoRegistry.h"
#include "core/output/StdioWritable.h"
#include "monitor/MonitorState.h"
#include "shell/ShellBuildRecord.h"
#include "watchdog/WatchdogBuildRecord.h"

namespace Monitor {

void RegisterVersion() {
    Quenda::BuildInfoRegistry& registry = Quenda::BuildInfoRegistry::Instance();
    registry.SetApplicationName(settings.monitor_process_name.c_str());
    registry.AddRuntimeRecord(Quenda::WatchdogBuildRecord());
    registry.AddRuntimeRecord(Quenda::ShellBuildRecord());
    registry.AddRuntimeRecord(Quenda::CoreBuildRecord());
}

void PrintVersion() {
    Quenda::StdioWritable out(stderr);
    Quenda::BuildInfoRegistry::Instance().PrintDetails(&out);
}

}  // namespace Monitor
