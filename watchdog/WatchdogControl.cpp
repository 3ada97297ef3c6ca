#include "watchdog/WatchdogControl.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "core/buildinfo/MakeBuildRecord.h"

namespace Quenda {

namespace {

constexpr const char* kNames[] = {
    "WD_DB_OK",          "WD_FILE_NOT_FOUND",      "WD_INV_FD_DESC",
    "WD_READ_ERR",       "WD_NULL_POINTER",        "WD_WRITE_ERROR",
    "WD_IOCTL_ERROR",    "WD_IOCTL_MMCINFO",       "WD_IOCTL_LSEEK",
    "WD_INV_ENTRY",      "WD_INV_FILE_IO",         "WD_INV_FILE_SIZE",
    "WD_ERASE_ERROR",    "WD_CMP_FAILED",          "WD_DEV_NOT_MATCHED",
    "WD_INV_MATCH_SIZE", "WD_VERIFICATION_FAILED", "UNKNOWN",
};
constexpr uint32_t kUnknown = std::size(kNames) - 1;

}  // namespace

WatchdogControl::WatchdogControl() {
    // "intial" is deliberate: the driver has misspelled its file names.
    Set(kCounter0, "/proc/cpld/watchdog/intial-cnt0");
    Set(kCounter1, "/proc/cpld/watchdog/intial-cnt1");
    Set(kCounter2, "/proc/cpld/watchdog/intial-cnt2");
    Set(kCounter3, "/proc/cpld/watchdog/intial-cnt3");
    Set(kControlEn, "/proc/cpld/watchdog/control-en");
    Set(kControlReset, "/proc/cpld/watchdog/control-reset");
    Set(kEnabledText, "1");
    Set(kControlAll, "/proc/cpld/watchdog/control-all");
}

void WatchdogControl::Set(Slot slot, const char* text) {
    (void)snprintf(slots_[slot], kSlotSize, "%s", text);  // cuts a longer text
}

uint32_t wdFormatError(const char* function, int line, uint32_t code, char* buffer, size_t length) {
    if (buffer == nullptr) {
        return WD_NULL_POINTER;
    }
    if (length < 2) {
        return WD_INV_ENTRY;
    }
    // Deliberate: the text has at most length - 2 characters, one less than would fit.
    buffer[length - 1] = '\0';
    buffer[0] = '\0';
    (void)snprintf(buffer, length - 1, "%s (%d) : %s", function, line,
                   kNames[std::min(code, kUnknown)]);
    return WD_DB_OK;
}

const BuildRecord& WatchdogBuildRecord() {
    static const BuildRecord record = QUENDA_BUILD_RECORD("watchdog_control");
    return record;
}

}  // namespace Quenda
