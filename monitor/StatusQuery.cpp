#include "monitor/StatusQuery.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "monitor/MonitorSettings.h"
#include "monitor/ProcessLookup.h"
#include "monitor/StatusReport.h"

namespace Monitor {

namespace {

constexpr unsigned int kBudgetSeconds = 10;  // for the whole query, counted in polls
constexpr unsigned int kPollMs = 10;
constexpr unsigned int kPolls = kBudgetSeconds * 1000 / kPollMs;

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
        fprintf(stderr, "The status file %s is %s: is its disk full?\n", kStatusFile,
                report.empty() ? "empty" : "incomplete");
    }
}

}  // namespace

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
