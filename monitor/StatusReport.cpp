#include "monitor/StatusReport.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "core/event/EventLoop.h"
#include "core/log/Log.h"
#include "core/output/StringWritable.h"
#include "monitor/HealthCheck.h"
#include "monitor/MonitorSettings.h"
#include "monitor/ProcessLookup.h"

namespace Monitor {

namespace {

// Holds the latest report.
constexpr char kStatusFile[] = "/var/run/quenda/keldra_monitor_status.log";
constexpr mode_t kStatusFileMode = 0644;  // independent of the umask

constexpr unsigned int kBudgetSeconds = 10;  // for the whole query, counted in polls
constexpr unsigned int kPollMs = 10;
constexpr unsigned int kPolls = kBudgetSeconds * 1000 / kPollMs;

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

// Opens the status file, with O_RDONLY or O_WRONLY and further flags. Refuses anything but a
// regular file with one link: no link is followed, no pipe blocks, no other file is overwritten.
// Returns -1, with errno set, on failure.
int OpenStatusFile(int flags) {
    const int fd = open(kStatusFile, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kStatusFileMode);
    struct stat status {};
    if (fd == -1 || (fstat(fd, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1)) {
        return fd;
    }
    (void)close(fd);  // nothing was written
    errno = EEXIST;
    return -1;
}

// The status file's modification time; false, with `time` unchanged, while there is no file.
bool ReadModificationTime(timespec& time) {
    struct stat status {};
    if (stat(kStatusFile, &status) == -1) {
        return false;
    }
    time = status.st_mtim;
    return true;
}

// Deliberate: seconds and nanoseconds are compared separately. After the wall clock was set back, a
// change is noticed if its nanoseconds are greater, and the query times out otherwise.
bool IsNewer(const timespec& time, const timespec& noted) {
    return time.tv_sec > noted.tv_sec || time.tv_nsec > noted.tv_nsec;
}

// Waits until a poll sees a new time and the next one sees the same time: then the file is
// complete. False if that takes all polls.
bool AwaitReport(timespec noted) {
    bool hasChanged = false;
    for (unsigned int polls = 1; polls <= kPolls; ++polls) {
        usleep(kPollMs * 1000);
        timespec time{};
        if (!ReadModificationTime(time) || (!hasChanged && !IsNewer(time, noted))) {
            continue;
        }
        if (hasChanged && time.tv_sec == noted.tv_sec && time.tv_nsec == noted.tv_nsec) {
            return polls < kPolls;
        }
        hasChanged = true;
        noted = time;
    }
    return false;
}

void PrintStatusFile() {
    const int fd = OpenStatusFile(O_RDONLY);
    if (fd == -1) {
        fprintf(stderr, "Failed to open the status file %s for reading: %s\n", kStatusFile,
                strerror(errno));
        return;
    }
    std::string report;
    char chunk[4096];
    ssize_t count = 0;
    while ((count = read(fd, chunk, sizeof(chunk))) > 0) {
        report.append(chunk, static_cast<size_t>(count));
    }
    (void)close(fd);  // nothing was written
    (void)fwrite(report.data(), 1, report.size(), stderr);
    if (!IsWholeReport(report)) {
        const bool isCutInALine = !report.empty() && report.back() != '\n';
        fprintf(stderr, "%sThe status file %s is %s: is its disk full?\n", isCutInALine ? "\n" : "",
                kStatusFile, report.empty() ? "empty" : "incomplete");
    }
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

void UpdateStatusFile() {
    Quenda::StringWritable report;
    WriteStatusReport(&report);
    const int fd = OpenStatusFile(O_WRONLY | O_CREAT);
    if (fd == -1) {
        Quenda::LogMessage(0, "Failed to open the status file %s for writing: %s\n", kStatusFile,
                           strerror(errno));
        return;
    }
    (void)fchmod(fd, kStatusFileMode);  // if it fails, some users cannot read the report
    // One write over the old report, then the old rest is cut off: a reader never finds the file
    // empty in between. If the disk is full, the end is missing, and the reader notices.
    const std::string& text = report.Text();
    const ssize_t written = write(fd, text.data(), text.size());
    (void)!ftruncate(fd, std::max<ssize_t>(written, 0));
    (void)close(fd);
}

void QueryStatus() {
    const int32_t pid = FindOtherProcessId(settings.monitor_process_name.c_str());
    if (pid <= 0) {
        fprintf(stderr, "No other Keldra Monitor instance is running to query\n");
        return;
    }
    timespec noted{};
    (void)ReadModificationTime(noted);  // without a file, any file is a change
    if (kill(pid, SIGUSR1) == -1) {
        fprintf(stderr, "Failed to signal Keldra Monitor %d to print its status: %s\n", pid,
                strerror(errno));
        return;
    }
    if (!AwaitReport(noted)) {
        fprintf(stderr,
                "TIMEOUT! Keldra Monitor %d did not update the status file %s within %u seconds\n",
                pid, kStatusFile, kBudgetSeconds);
        return;
    }
    PrintStatusFile();
}

}  // namespace Monitor
