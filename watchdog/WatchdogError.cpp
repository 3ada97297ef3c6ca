#include "watchdog/WatchdogError.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

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

uint32_t wdFormatError(const char* function, int line, uint32_t code, char* buffer, size_t length) {
    if (buffer == nullptr) {
        return WD_NULL_POINTER;
    }
    if (length < 2) {
        return WD_INV_ENTRY;
    }
    buffer[length - 1] = '\0';
    buffer[0] = '\0';
    (void)snprintf(buffer, length - 1, "%s (%d) : %s", function, line,
                   kNames[std::min(code, kUnknown)]);
    return WD_DB_OK;
}

}  // namespace Quenda
