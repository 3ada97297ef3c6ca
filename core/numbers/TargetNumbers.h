// Numbers read and converted as the terminal's C library and processor do it: its `long` has 32
// bits, so an out-of-range text gives the nearest limit where a 64-bit workstation would give
// the low bits of a larger number.
#pragma once

#include <cstdint>

namespace Quenda {

// sscanf(3) with "%i" and "%u"; with "%d" or "%x" when another base is given: 8, 10, 16, or 0 to
// detect a leading "0x" or "0". White space before the number is skipped, whatever follows it is
// ignored. A minus sign negates an unsigned number modulo 2^32. False, `value` untouched, when
// there is no number.
bool ScanInt32(const char* text, int32_t& value, int base = 0);
bool ScanUInt32(const char* text, uint32_t& value, int base = 10);

// strtol(3) and strtoul(3) with a 32-bit long: 0 when there is no number.
int32_t StrToInt32(const char* text, int base);
uint32_t StrToUInt32(const char* text, int base);

// Cuts the fraction off. Out of range the signed form gives the nearest limit; the unsigned form
// gives 2^32 - 1 above its range and the bits of the signed form below. Not-a-number gives the
// bits of the smallest signed number.
int32_t DoubleToInt32(double value);
uint32_t DoubleToUInt32(double value);

}  // namespace Quenda
