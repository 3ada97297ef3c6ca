// Shared by all operations of the watchdog library: the control files, the result codes with their
// texts, and the library's build record.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/buildinfo/BuildRecord.h"

namespace Quenda {

// The control files of the hardware watchdog in the board's CPLD, under /proc/cpld/watchdog/.
// Tests and simulations may point a slot at another file.
class WatchdogControl {
public:
    enum Slot : size_t {
        kCounter0,  // counter byte 0, the least significant
        kCounter1,
        kCounter2,
        kCounter3,      // the most significant
        kControlEn,     // whether the watchdog is enabled
        kControlReset,  // reset strobe
        kEnabledText,   // no file: the text that kControlEn holds when the watchdog is enabled
        kControlAll,    // start and stop
        kSlotCount
    };
    static constexpr size_t kSlotSize = 56;  // a terminating zero included

    WatchdogControl();

    const char* Get(Slot slot) const { return slots_[slot]; }
    // Longer texts are cut to 55 characters.
    void Set(Slot slot, const char* text);

private:
    char slots_[kSlotCount][kSlotSize];
};

// This library raises the codes marked *. The others are in use in the board's other device
// libraries, which share the numbers.
enum WdError : uint32_t {
    WD_DB_OK = 0,           // * success
    WD_FILE_NOT_FOUND = 1,  // * a control file cannot be opened
    WD_INV_FD_DESC = 2,     // * a descriptor that is not open
    WD_READ_ERR = 3,        // * a read or a write was short; deliberately also for writes
    WD_NULL_POINTER = 4,    // * a required pointer is null
    WD_WRITE_ERROR = 5,
    WD_IOCTL_ERROR = 6,
    WD_IOCTL_MMCINFO = 7,
    WD_IOCTL_LSEEK = 8,
    WD_INV_ENTRY = 9,  // * no such bite time; an error buffer shorter than 2
    WD_INV_FILE_IO = 10,
    WD_INV_FILE_SIZE = 11,
    WD_ERASE_ERROR = 12,
    WD_CMP_FAILED = 13,
    WD_DEV_NOT_MATCHED = 14,
    WD_INV_MATCH_SIZE = 15,
    WD_VERIFICATION_FAILED = 16,
};

// Writes "function (line) : NAME of the code" into `buffer`, cut to length - 2 characters; codes
// above 16 are "UNKNOWN". Returns WD_NULL_POINTER for a null buffer, WD_INV_ENTRY for a length
// below 2, with the buffer untouched in both cases; otherwise WD_DB_OK.
uint32_t wdFormatError(const char* function, int line, uint32_t code, char* buffer, size_t length);

const BuildRecord& WatchdogBuildRecord();

}  // namespace Quenda
