#include "monitor/StartUp.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <new>
#include <utility>

#include "core/buildinfo/BuildInfoRegistry.h"
#include "core/event/EventLoop.h"
#include "core/log/Log.h"
#include "core/log/Syslog.h"
#include "core/log/TraceList.h"
#include "core/options/OptionsNodeEdit.h"
#include "core/output/StdioWritable.h"
#include "monitor/ChildControl.h"
#include "monitor/HealthCheck.h"
#include "monitor/MonitorSettings.h"
#include "monitor/ProcessLookup.h"
#include "monitor/SignalHandlers.h"
#include "monitor/StatusReport.h"
#include "shell/ShellRunner.h"
#include "watchdog/WatchdogControl.h"

namespace Monitor {

using Quenda::LogMessage;

namespace {

constexpr char kWorkingDirectory[] = "/var/run/quenda";
constexpr int kDebugTraceLevel = 9;
constexpr int kSyslogTraceLevel = 2;

constexpr useconds_t kPollUs = 10000;
constexpr int kPollsForYounger = 100;  // a second

// Opens /dev/null for each standard stream that the starter closed. Otherwise a file opened later
// would become standard error, and log lines would end up in it.
void OpenStandardStreams() {
    int fd = -1;
    do {
        fd = open("/dev/null", O_RDWR);
    } while (fd != -1 && fd <= STDERR_FILENO);
    if (fd != -1) {
        (void)close(fd);  // all three are open
    }
}

// Descriptors that the starter left open would keep its locks held and its pipes open for as long
// as the daemon runs. In debugging mode they are kept, since tools (a tracer, a test) may need
// them.
void CloseStartersDescriptors() {
    if (!settings.debug && close_range(STDERR_FILENO + 1, UINT_MAX, 0) == -1) {
        Quenda::CloseInheritedDescriptors();  // a kernel before 5.9
    }
}

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

void OpenLogs() {
    // They must exist until the process exits, as long as the trace list refers to them.
    static Quenda::StdioWritable standardError(stderr);
    static Quenda::SysloggerWritable syslogger;
    if (settings.debug) {
        Quenda::GlobalTraceList().AddSink(kDebugTraceLevel, &standardError);
    } else {
        Quenda::GlobalTraceList().AddSink(kSyslogTraceLevel, &syslogger);
    }
    Quenda::OpenSyslog(settings.monitor_process_name.c_str());
}

// Whether that process was started before this one. If both were started in the same tick, the
// lower PID counts as the earlier one. PIDs wrap, so this may be wrong, but both processes agree on
// it.
bool IsOlder(int32_t other) {
    const int32_t self = getpid();
    uint64_t ownStart = 0;
    uint64_t otherStart = 0;
    return ReadStartTime(self, ownStart) && ReadStartTime(other, otherStart) &&
           std::pair(otherStart, other) < std::pair(ownStart, self);
}

// Daemons that are started at the same moment see each other, and exactly one of them must remain.
// If an older process has the name, this one refuses at once. A younger one gets a second to end:
// if it is a daemon that is starting, it refuses because of this one. If it is still there after
// that, this one refuses: it may be a running daemon, because a shell that existed before it can
// become this process by exec. An unreadable process table refuses, too: two monitors are worse
// than none.
bool IsOnlyInstance() {
    const char* const name = settings.monitor_process_name.c_str();
    int32_t other = 0;
    for (int polls = 0; (other = FindOtherProcessId(name)) != 0; ++polls) {
        if (other < 0 || IsOlder(other) || polls == kPollsForYounger) {
            LogMessage(0, "Keldra Monitor refuses to start while another %s is running...\n", name);
            return false;
        }
        usleep(kPollUs);
    }
    return true;
}

void Detach() {
    if (!settings.debug && daemon(1, 0) == -1) {
        // If fork fails, it supervises in the foreground; the starting command does not return.
        LogMessage(0, "Failed to detach: %s\n", strerror(errno));
    }
}

void EnterWorkingDirectory() {
    if (chdir(kWorkingDirectory) == -1) {
        LogMessage(0, "Failed to chdir to %s: %s\n", kWorkingDirectory, strerror(errno));
        LogMessage(0, "Please ensure that %s is correctly installed\n",
                   Quenda::BuildInfoRegistry::Instance().GetApplicationName());
    }
}

void OnHeartbeatChecked(bool heartbeatRead) {
    (void)CheckHealth(heartbeatRead);
}

bool StartHeartbeatReader() {
    Quenda::OptionsNodeEdit options;
    (void)options.SetLeaf("heartbeat_filename", settings.heartbeat_file, nullptr);
    (void)options.SetLeaf("heartbeat_timeout_sec", settings.heartbeat_timeout_sec, nullptr);
    if (!heartbeatReader.Reload(options)) {
        LogMessage(0, "Failed to set the HeartbeatReadTimer options\n");
    }
    if (heartbeatReader.GetTimeout() >= kBiteSeconds) {
        LogMessage(0,
                   "The heartbeat timeout is %u seconds, but the watchdog will bite after %d "
                   "seconds. This will most likely cause problems, but continuing anyway.\n",
                   heartbeatReader.GetTimeout(), static_cast<int>(kBiteSeconds));
    }
    heartbeatReader.SetResultCallback(
        Quenda::CallbackRef1<bool>(new Quenda::GlobalCallback1<bool>(OnHeartbeatChecked)));
    if (!heartbeatReader.Start()) {
        LogMessage(0, "Failed to start the heartbeat timer\n");
        return false;
    }
    return true;
}

int Supervise() {
    CloseStartersDescriptors();
    PrepareSignals(!settings.debug);
    OpenLogs();
    if (!IsOnlyInstance()) {
        return 1;
    }
    Detach();
    HoldSignals();
    EnterWorkingDirectory();
    (void)ArmWatchdog(kBiteSeconds);  // logs its own failure; every check tries again
    if (!StartHeartbeatReader()) {
        return 1;
    }
    InstallSignalHandlers();
    if (!ChooseOptionsFile(supervision.options_type)) {
        return 1;
    }
    Quenda::EventLoop& loop = Quenda::EventLoop::Instance();
    if (!loop.Init()) {
        LogMessage(0, "Failed to initialize the main event loop!\n");
        return 1;
    }
    LogDebug("Starting the main event loop\n");
    // Keldra is not started here: the first check does not find it and starts it.
    loop.Run();
    LogMessage(0, "%s: BUG! Keldra Monitor returns?!\n", "int main(int, char**)");
    return 2;
}

int Run(int argc, char** argv) {
    OpenStandardStreams();
    RegisterVersion();
    switch (ParseCommandLine(argc, argv, settings)) {
        case Request::kNothing:
            return 1;
        case Request::kQuery:
            InstallQuerySignalHandler();
            QueryStatus();
            return 0;
        case Request::kVersion:
            PrintVersion();
            return 0;
        case Request::kSupervise:
            break;
    }
    return Supervise();
}

}  // namespace

int RunMonitor(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::bad_alloc&) {
        LogMessage(0, "Out of memory: Keldra Monitor ends\n");
        return 1;
    }
}

}  // namespace Monitor
