#include "monitor/StatusReport.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "core/event/EventLoop.h"
#include "core/log/Log.h"
#include "core/output/StdioWritable.h"
#include "monitor/MonitorState.h"

namespace Monitor {

namespace {

constexpr mode_t kStatusFileMode = 0644;  // whatever the umask that the daemon was started with

const char* TrueOrFalse(bool value) {
    return value ? "true" : "false";
}

void WriteParameters(FILE* out) {
    fprintf(out, "Parameters\n==========\n");
    fprintf(out, "Keldra Monitor Process Name: %s\n", settings.monitor_process_name.c_str());
    fprintf(out, "Keldra Process Name:         %s\n", settings.keldra_process_name.c_str());
    fprintf(out, "SSH Daemon Process Name:     %s\n", settings.sshd_process_name.c_str());
    fprintf(out, "Service Script:              %s\n", settings.service_script.c_str());
    fprintf(out, "LED Control Script:          %s\n", settings.led_control_script.c_str());
    fprintf(out, "Max Strikes:                 %u\n", settings.max_strikes);
    fprintf(out, "\n");
}

void WriteStatistics(FILE* out) {
    const auto count = [](uint32_t counter) { return size_t{counter}; };
    fprintf(out, "Statistics\n==========\n");
    fprintf(out, "keldra_state_unknown:       %zu\n", count(statistics.keldra_state_unknown));
    fprintf(out, "keldra_not_running:         %zu\n", count(statistics.keldra_not_running));
    fprintf(out, "keldra_in_error_state:      %zu\n", count(statistics.keldra_in_error_state));
    fprintf(out, "keldra_missed_heartbeat:    %zu\n", count(statistics.keldra_missed_heartbeat));
    fprintf(out, "keldra_recovered:           %zu\n", count(statistics.keldra_recovered));
    fprintf(out, "start_with_normal_options:  %zu\n", count(statistics.start_with_normal_options));
    fprintf(out, "start_with_backup_options:  %zu\n", count(statistics.start_with_backup_options));
    fprintf(out, "start_with_factory_options: %zu\n", count(statistics.start_with_factory_options));
    fprintf(out, "start_sshd:                 %zu\n", count(statistics.start_sshd));
    fprintf(out, "\n");
}

void WriteState(FILE* out) {
    fprintf(out, "State\n=====\n");
    fprintf(out, "Keldra State:   %s\n", Text(supervision.keldra_state));
    fprintf(out, "Options Type:   %s\n", Text(supervision.options_type));
    fprintf(out, "Strikes:        %u\n", supervision.strikes);
    fprintf(out, "Keldra PID:     %d\n", supervision.keldra_pid);
    fprintf(out, "SSH Daemon PID: %d\n", supervision.sshd_pid);
    fprintf(out, "\n");
}

void WriteHeartbeatTimer(FILE* out) {
    const Quenda::HeartbeatReadTimer& reader = heartbeatReader;
    fprintf(out, "Heartbeat Timer\n===============\n");
    fprintf(out, "Heartbeat File:           %s\n", reader.GetFilename());
    fprintf(out, "Heartbeat Timeout:        %u (seconds)\n", reader.GetTimeout());
    fprintf(out, "Next Heartbeat Check:     %u (seconds)\n", reader.GetSecondsToNextCheck());
    fprintf(out, "Last Heartbeat Count:     %u\n", reader.GetLastCount());
    fprintf(out, "Previous Heartbeat Count: %u\n", reader.GetPreviousCount());
    fprintf(out, "Heartbeat Timer Active:   %s\n", TrueOrFalse(reader.IsActive()));
    fprintf(out, "In Error State:           %s\n", TrueOrFalse(reader.InErrorState()));
    fprintf(out, "Last Heartbeat Missed:    %s\n", TrueOrFalse(reader.HeartbeatMissed()));
    fprintf(out, "\n");
}

void WriteEventLoop(FILE* out) {
    fprintf(out, "Event Loop\n==========\n");
    Quenda::StdioWritable sink(out);
    Quenda::EventLoop::Instance().Dump(&sink);
    fprintf(out, "\n");
}

// Empties the file for a new report. False, with errno set, when it is not a file of its own.
bool Prepare(int fd) {
    struct stat status {};
    if (fstat(fd, &status) == -1) {
        return false;
    }
    if (!S_ISREG(status.st_mode) || status.st_nlink != 1) {
        errno = EEXIST;
        return false;
    }
    (void)fchmod(fd, kStatusFileMode);  // a report that few can read is better than none
    return ftruncate(fd, 0) == 0;
}

// Somebody may have put something else into the file's place: it is not followed, not waited for
// and not emptied. Returns null with errno set on failure.
FILE* OpenStatusFile() {
    // Close-on-exec: a command that the daemon may be starting just now must not inherit it.
    const int fd = open(kStatusFile, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
                        kStatusFileMode);
    if (fd == -1) {
        return nullptr;
    }
    FILE* const file = Prepare(fd) ? fdopen(fd, "w") : nullptr;
    if (file == nullptr) {
        const int error = errno;
        (void)close(fd);  // nothing was written
        errno = error;
    }
    return file;
}

}  // namespace

void WriteStatusReport(FILE* stream) {
    WriteParameters(stream);
    WriteStatistics(stream);
    WriteState(stream);
    WriteHeartbeatTimer(stream);
    WriteEventLoop(stream);
}

void UpdateStatusFile() {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(OpenStatusFile(), fclose);
    if (!file) {
        Quenda::LogMessage(0, "Failed to open the status file %s for writing: %s\n", kStatusFile,
                           strerror(errno));
        return;
    }
    WriteStatusReport(file.get());  // one cut short by a full disk is seen by its reader
}

}  // namespace Monitor
