#include "monitor/ProcessLookup.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>

#include "core/numbers/TargetNumbers.h"
#include "core/signals/SignalWindow.h"

namespace Monitor {

namespace {

constexpr time_t kPauseSeconds = 1;
constexpr size_t kLineSize = 128;  // name and parent come first in the line
constexpr int kStartTimeField = 22;

bool IsSpace(char c) {
    return isspace(static_cast<unsigned char>(c)) != 0;
}

// Lasts the whole second: signals to this process are handled and do not shorten it.
void Pause() {
    timespec end{};
    (void)clock_gettime(CLOCK_MONOTONIC, &end);  // cannot fail with this clock
    end.tv_sec += kPauseSeconds;
    const Quenda::SignalWindow window;
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
    }
}

// The stat line of a process, cut to `size` - 1 bytes.
bool ReadStatLine(int32_t pid, char* line, size_t size) {
    char path[32];  // room for any PID
    (void)snprintf(path, sizeof(path), "/proc/%d/stat", pid);
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd == -1) {
        return false;
    }
    const ssize_t length = read(fd, line, size);
    (void)close(fd);  // nothing was written
    if (length <= 0) {
        return false;
    }
    line[std::min(static_cast<size_t>(length), size - 1)] = '\0';
    return true;
}

bool SignalOne(int32_t pid, int signal) {
    return kill(pid, signal) == 0 || errno == ESRCH;
}

int32_t FindProcessExcept(int32_t excluded, const char* name) {
    std::vector<int32_t> pids;
    if (!CollectProcessIds(name, pids)) {
        return -1;
    }
    const auto found =
        std::find_if(pids.begin(), pids.end(), [=](int32_t pid) { return pid != excluded; });
    return found == pids.end() ? 0 : *found;
}

}  // namespace

bool ReadProcessStat(int32_t pid, char (&name)[kProcessNameSize], int32_t& parentPid) {
    char line[kLineSize];
    return ReadStatLine(pid, line, sizeof(line)) && ParseProcessStat(line, name, parentPid);
}

bool ReadStartTime(int32_t pid, uint64_t& ticks) {
    char line[1024];  // room for all fields
    if (!ReadStatLine(pid, line, sizeof(line))) {
        return false;
    }
    // The name, field 2, may contain blanks and parentheses, so the count starts after it.
    const char* at = strrchr(line, ')');
    for (int field = 2; field < kStartTimeField && at != nullptr; ++field) {
        at = strchr(at + 1, ' ');
    }
    if (at == nullptr) {
        return false;
    }
    ticks = strtoull(at, nullptr, 10);
    return true;
}

bool ParseProcessStat(const char* line, char (&name)[kProcessNameSize], int32_t& parentPid) {
    const char* const end = line + strnlen(line, kLineSize - 1);
    const char* at =
        std::find_if(line, end, [](char c) { return isdigit(static_cast<unsigned char>(c)) == 0; });
    if (end - at < 2 || !IsSpace(at[0]) || at[1] != '(') {
        return false;
    }
    at += 2;
    const char* const nameEnd = std::find(at, end, ')');
    // ") S " and at least one character of the parent's number.
    if (end - nameEnd < 5 || !IsSpace(nameEnd[1]) ||
        isalpha(static_cast<unsigned char>(nameEnd[2])) == 0 || !IsSpace(nameEnd[3])) {
        return false;
    }
    // Copied, since the scan must not read on past the end.
    char number[kLineSize] = {};
    (void)std::copy(nameEnd + 4, end, number);
    int32_t parent = 0;
    if (!Quenda::ScanInt32(number, parent, 10)) {
        return false;
    }
    *std::copy(at, nameEnd, name) = '\0';
    parentPid = parent;
    return true;
}

bool CollectProcessIds(const char* name, std::vector<int32_t>& pids) {
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(
        name == nullptr ? nullptr : opendir("/proc"), closedir);
    if (!directory) {
        return false;
    }
    while (const dirent* const entry = readdir(directory.get())) {
        int32_t pid = 0;
        if (Quenda::ScanInt32(entry->d_name, pid, 10) && IsProcessRunning(name, pid)) {
            pids.push_back(pid);
        }
    }
    return true;
}

int32_t FindProcessId(const char* name) {
    return FindProcessExcept(0, name);  // no process has the PID 0
}

int32_t FindOtherProcessId(const char* name) {
    return FindProcessExcept(getpid(), name);
}

bool IsProcessRunning(const char* name, int32_t pid) {
    char found[kProcessNameSize];
    int32_t parentPid = 0;
    return name != nullptr && pid != 0 && ReadProcessStat(pid, found, parentPid) &&
           strcmp(found, name) == 0;
}

bool SignalProcessesByName(const char* name, int signal) {
    std::vector<int32_t> pids;
    if (!CollectProcessIds(name, pids) || pids.empty()) {
        return false;
    }
    const int32_t self = getpid();
    const auto own = std::find(pids.begin(), pids.end(), self);
    if (own != pids.end()) {
        (void)std::rotate(own, own + 1, pids.end());  // the caller last, the others in their order
    }
    bool allSignalled = true;
    for (const int32_t pid : pids) {
        allSignalled = SignalOne(pid, signal) && allSignalled;
    }
    Pause();
    return allSignalled;
}

}  // namespace Monitor
