// The watchdog library's result codes and error texts.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Quenda {

// Codes marked * are raised by this library; the others belong to the board's family of device
// libraries, which share the numbers.
enum WdError : uint32_t {
    WD_DB_OK = 0,           // * success
    WD_FILE_NOT_FOUND = 1,  // * a control file cannot be opened
    WD_INV_FD_DESC = 2,     // * a descriptor that is not open
    WD_READ_ERR = 3,        // * a read or a write was short; writes share the code on purpose
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

// Writes "function (line) : NAME of the code" into `buffer`, cut to its length; codes above 16
// are "UNKNOWN". Returns WD_NULL_POINTER for a null buffer, WD_INV_ENTRY for a length below 2,
// with the buffer untouched in both cases; otherwise WD_DB_OK.
uint32_t wdFormatError(const char* function, int line, uint32_t code, char* buffer, size_t length);

}  // namespace Quenda
