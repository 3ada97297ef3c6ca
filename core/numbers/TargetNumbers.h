// Reads and converts numbers as the terminal's C library and processor do. Its `long` has 32 bits,
// so a text beyond 32 bits gives the limit, where a 64-bit workstation would give the low bits of a
// larger number. A minus negates an unsigned number modulo 2^32, but not the limit.
#pragma once

#include <cstdint>

namespace Quenda {

// As sscanf(3) with "%i" and "%u", or in the given base: 8, 10, 16, or 0 to detect a leading "0x"
// or "0". White space before the number is skipped, text after it is ignored. Without a number the
// result is false, and `value` is unchanged.
bool ScanInt32(const char* text, int32_t& value, int base = 0);
bool ScanUInt32(const char* text, uint32_t& value, int base = 10);

// As strtol(3) and strtoul(3) with a 32-bit long: 0 when there is no number.
int32_t StrToInt32(const char* text, int base);
uint32_t StrToUInt32(const char* text, int base);

// Cuts the fraction off. Out of range, the signed form gives the nearest limit. The unsigned form
// gives 2^32 - 1 above its range, and the bits of the signed form below it. Not-a-number gives the
// bits of the smallest signed number.
int32_t DoubleToInt32(double value);
uint32_t DoubleToUInt32(double value);

}  // namespace Quenda
