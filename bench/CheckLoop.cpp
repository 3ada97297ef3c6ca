// Runs checks without waiting between them, along the daemon's own road: event loop, timer,
// heartbeat reader, health check. Prints the memory after an early check and after the last one.
//
//   check_loop success|failure EARLY CHECKS
//
// success: Keldra and sshd run. failure: there is neither Keldra nor its program nor a heartbeat
// file, and the strikes have no maximum.
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "core/event/EventLoop.h"
#include "core/log/Syslog.h"
#include "core/log/TraceList.h"
#include "core/options/OptionsNodeEdit.h"
#include "core/timer/TimeKeeper.h"
#include "monitor/HealthCheck.h"
#include "monitor/MonitorState.h"
#include "monitor/MonitorWatchdog.h"

namespace {

constexpr char kHeartbeatFile[] = "/tmp/check_loop.heartbeat";
constexpr uint32_t kPeriodSeconds = 60;

int checks = 0;

void OnHeartbeatChecked(bool heartbeatRead) {
    (void)Monitor::CheckHealth(heartbeatRead);
    ++checks;
}

void Prepare(bool success) {
    Monitor::settings.heartbeat_file = kHeartbeatFile;
    Monitor::settings.led_control_script = "true";
    Monitor::settings.max_strikes = UINT32_MAX;
    if (!success) {
        Monitor::settings.keldra_process_name = "no_keldra";
    }
    static Quenda::SysloggerWritable syslogger;
    Quenda::GlobalTraceList().AddSink(2, &syslogger);
    Quenda::OpenSyslog("check_loop");
    Quenda::OptionsNodeEdit options;
    (void)options.SetLeaf("heartbeat_filename", Monitor::settings.heartbeat_file, nullptr);
    (void)options.SetLeaf("heartbeat_timeout_sec", kPeriodSeconds, nullptr);
    (void)Monitor::heartbeatReader.Reload(options);
    Monitor::heartbeatReader.SetResultCallback(
        Quenda::CallbackRef1<bool>(new Quenda::GlobalCallback1<bool>(OnHeartbeatChecked)));
}

void WriteHeartbeat(uint32_t count) {
    FILE* const file = fopen(kHeartbeatFile, "w");
    (void)fwrite(&count, sizeof(count), 1, file);
    (void)fclose(file);
}

// What the process has in memory, in KB, counted page by page.
long ResidentKb() {
    std::ifstream map("/proc/self/smaps_rollup");
    std::string line;
    while (std::getline(map, line)) {
        if (line.rfind("Rss:", 0) == 0) {
            return strtol(line.c_str() + sizeof("Rss:"), nullptr, 10);
        }
    }
    return -1;
}

void Report(const char* when, int output) {
    const size_t heap = mallinfo2().uordblks;
    (void)dprintf(output, "%s heap %zu\n%s resident %ld\n", when, heap, when, ResidentKb());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        return 2;
    }
    const bool success = strcmp(argv[1], "success") == 0;
    const int early = atoi(argv[2]);
    const int wanted = atoi(argv[3]);
    // As in the daemon, whose standard streams lead nowhere.
    const int output = dup(STDOUT_FILENO);
    (void)!freopen("/dev/null", "w", stdout);
    (void)!freopen("/dev/null", "w", stderr);

    Prepare(success);
    Quenda::TimeValue now = Quenda::TimeValue::Now();
    if (Monitor::ArmWatchdog(Monitor::kBiteSeconds) != 0 || !Quenda::EventLoop::Instance().Init() ||
        !Monitor::heartbeatReader.Start()) {
        return 1;
    }
    while (checks < wanted) {
        if (success) {
            WriteHeartbeat(static_cast<uint32_t>(checks) + 1);
        }
        now.AddMilliseconds(kPeriodSeconds * 1000);
        const int before = checks;
        (void)Quenda::EventLoop::Instance().Poll();
        Quenda::TimeKeeper::Instance().ProcessExpired(now);
        if (checks != before + 1) {
            return 1;
        }
        if (checks == early) {
            Report("unused", output);  // the first report itself takes memory
            Report("early", output);
        }
    }
    Report("late", output);
    const uint32_t strikes = Monitor::supervision.strikes;
    return strikes == (success ? 0 : static_cast<uint32_t>(wanted)) ? 0 : 1;
}
