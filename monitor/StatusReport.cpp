#include "monitor/StatusReport.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "core/event/EventLoop.h"
#include "core/log/Log.h"
#include "core/output/StringWritable.h"
#include "monitor/MonitorState.h"

namespace Monitor {

namespace {

constexpr mode_t kStatusFileMode = 0644;  // whatever the umask that the daemon was started with

const char* TrueOrFalse(bool value) {
    return value ? "true" : "false";
}

void WriteParameters(Quenda::Writable* out) {
    out->Printf("Parameters\n==========\n");
    out->Printf("Keldra Monitor Process Name: %s\n", settings.monitor_process_name.c_str());
    out->Printf("Keldra Process Name:         %s\n", settings.keldra_process_name.c_str());
    out->Printf("SSH Daemon Process Name:     %s\n", settings.sshd_process_name.c_str());
    out->Printf("Service Script:              %s\n", settings.service_script.c_str());
    out->Printf("LED Control Script:          %s\n", settings.led_control_script.c_str());
    out->Printf("Max Strikes:                 %u\n", settings.max_strikes);
    out->Printf("\n");
}

void WriteStatistics(Quenda::Writable* out) {
    const auto count = [](uint32_t counter) { return size_t{counter}; };
    out->Printf("Statistics\n==========\n");
    out->Printf("keldra_state_unknown:       %zu\n", count(statistics.keldra_state_unknown));
    out->Printf("keldra_not_running:         %zu\n", count(statistics.keldra_not_running));
    out->Printf("keldra_in_error_state:      %zu\n", count(statistics.keldra_in_error_state));
    out->Printf("keldra_missed_heartbeat:    %zu\n", count(statistics.keldra_missed_heartbeat));
    out->Printf("keldra_recovered:           %zu\n", count(statistics.keldra_recovered));
    out->Printf("start_with_normal_options:  %zu\n", count(statistics.start_with_normal_options));
    out->Printf("start_with_backup_options:  %zu\n", count(statistics.start_with_backup_options));
    out->Printf("start_with_factory_options: %zu\n", count(statistics.start_with_factory_options));
    out->Printf("start_sshd:                 %zu\n", count(statistics.start_sshd));
    out->Printf("\n");
}

void WriteState(Quenda::Writable* out) {
    out->Printf("State\n=====\n");
    out->Printf("Keldra State:   %s\n", Text(supervision.keldra_state));
    out->Printf("Options Type:   %s\n", Text(supervision.options_type));
    out->Printf("Strikes:        %u\n", supervision.strikes);
    out->Printf("Keldra PID:     %d\n", supervision.keldra_pid);
    out->Printf("SSH Daemon PID: %d\n", supervision.sshd_pid);
    out->Printf("\n");
}

void WriteHeartbeatTimer(Quenda::Writable* out) {
    const Quenda::HeartbeatReadTimer& reader = heartbeatReader;
    out->Printf("Heartbeat Timer\n===============\n");
    out->Printf("Heartbeat File:           %s\n", reader.GetFilename());
    out->Printf("Heartbeat Timeout:        %u (seconds)\n", reader.GetTimeout());
    out->Printf("Next Heartbeat Check:     %u (seconds)\n", reader.GetSecondsToNextCheck());
    out->Printf("Last Heartbeat Count:     %u\n", reader.GetLastCount());
    out->Printf("Previous Heartbeat Count: %u\n", reader.GetPreviousCount());
    out->Printf("Heartbeat Timer Active:   %s\n", TrueOrFalse(reader.IsActive()));
    out->Printf("In Error State:           %s\n", TrueOrFalse(reader.InErrorState()));
    out->Printf("Last Heartbeat Missed:    %s\n", TrueOrFalse(reader.HeartbeatMissed()));
    out->Printf("\n");
}

void WriteEventLoop(Quenda::Writable* out) {
    out->Printf("Event Loop\n==========\n");
    Quenda::EventLoop::Instance().Dump(out);
    out->Printf("\n");
}

}  // namespace

void WriteStatusReport(Quenda::Writable* out) {
    WriteParameters(out);
    WriteStatistics(out);
    WriteState(out);
    WriteHeartbeatTimer(out);
    WriteEventLoop(out);
}

bool IsWholeReport(const std::string& text) {
    const size_t lastLine = text.find("\nNew Activities: ");
    return lastLine != std::string::npos && text.find("\n\n", lastLine) == text.size() - 2;
}

int OpenStatusFile(int flags) {
    const int fd = open(kStatusFile, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kStatusFileMode);
    if (fd == -1) {
        return -1;
    }
    struct stat status {};
    int error = EEXIST;
    if (fstat(fd, &status) == -1) {
        error = errno;
    } else if (S_ISREG(status.st_mode) && status.st_nlink == 1) {
        return fd;
    }
    (void)close(fd);  // nothing was written
    errno = error;
    return -1;
}

void UpdateStatusFile() {
    Quenda::StringWritable report;
    WriteStatusReport(&report);
    const int fd = OpenStatusFile(O_WRONLY | O_CREAT);
    if (fd == -1) {
        Quenda::LogMessage(0, "Failed to open the status file %s for writing: %s\n", kStatusFile,
                           strerror(errno));
        return;
    }
    (void)fchmod(fd, kStatusFileMode);  // a report that few can read is better than none
    // Written at once, over the old report, whose rest is cut off: a reader never finds the file
    // empty in between. What a full disk does not take, the reader finds missing.
    const std::string& text = report.Text();
    const ssize_t written = write(fd, text.data(), text.size());
    (void)!ftruncate(fd, std::max<ssize_t>(written, 0));
    (void)close(fd);
}

}  // namespace Monitor
