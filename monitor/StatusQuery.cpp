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

#include "monitor/MonitorState.h"
#include "monitor/ProcessLookup.h"
#include "monitor/StatusReport.h"

namespace Monitor {

namespace {

constexpr unsigned int kBudgetSeconds = 10;
constexpr unsigned int kPollMs = 10;

// The time that the whole query may take, counted in polls.
class PollBudget {
public:
    bool IsSpent() const { return polls_ * kPollMs >= kBudgetSeconds * 1000; }
    void WaitForNextPoll() {
        usleep(kPollMs * 1000);
        ++polls_;
    }

private:
    unsigned int polls_ = 0;
};

// The status file's modification time; false, with `time` unchanged, while there is no file.
bool ReadModificationTime(timespec& time) {
    struct stat status {};
    if (stat(kStatusFile, &status) == -1) {
        return false;
    }
    time = status.st_mtim;
    return true;
}

// Each part is compared on its own. After the wall clock was set back, a change may stay unseen.
bool IsNewer(const timespec& time, const timespec& noted) {
    return time.tv_sec > noted.tv_sec || time.tv_nsec > noted.tv_nsec;
}

bool IsSame(const timespec& time, const timespec& noted) {
    return time.tv_sec == noted.tv_sec && time.tv_nsec == noted.tv_nsec;
}

void WaitForChange(timespec& noted, PollBudget& budget) {
    while (!budget.IsSpent()) {
        budget.WaitForNextPoll();
        timespec time{};
        if (ReadModificationTime(time) && IsNewer(time, noted)) {
            noted = time;
            return;
        }
    }
}

// The file is complete when two polls in a row see the same time.
void WaitForRest(timespec& noted, PollBudget& budget) {
    while (!budget.IsSpent()) {
        budget.WaitForNextPoll();
        timespec time{};
        if (!ReadModificationTime(time)) {
            continue;
        }
        if (IsSame(time, noted)) {
            return;
        }
        noted = time;
    }
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
    PollBudget budget;
    WaitForChange(noted, budget);
    WaitForRest(noted, budget);
    if (budget.IsSpent()) {
        fprintf(stderr,
                "TIMEOUT! Keldra Monitor %d did not update the status file %s within %u seconds\n",
                pid, kStatusFile, kBudgetSeconds);
        return;
    }
    PrintStatusFile();
}

}  // namespace Monitor
