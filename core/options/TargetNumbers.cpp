#include "core/options/TargetNumbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace Quenda {

namespace {

constexpr uint32_t kMaxUnsigned = std::numeric_limits<uint32_t>::max();
constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
constexpr double kTwoTo31 = 2147483648.0;

// What strtoll(3) reads: limits of 64 bits, so that it tells which of the 32-bit ones was passed.
// The base is detected here, for newer C libraries than the terminal's detect more of them ("0b").
bool Read(const char* text, int base, long long& number) {
    if (base == 0) {
        const char* digits = text + std::strspn(text, " \t\n\v\f\r");
        digits += *digits == '-' || *digits == '+' ? 1 : 0;
        const bool hex = digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
        base = hex ? 16 : (*digits == '0' ? 8 : 10);
    }
    char* end = nullptr;
    number = std::strtoll(text, &end, base);
    return end != text;
}

int32_t ToSigned(long long number) {
    return static_cast<int32_t>(std::clamp<long long>(number, kMin, kMax));
}

uint32_t ToUnsigned(long long number) {
    const long long limit = kMaxUnsigned;
    return number < -limit || number > limit ? kMaxUnsigned : static_cast<uint32_t>(number);
}

}  // namespace

int32_t StrToInt32(const char* text, int base) {
    long long number = 0;
    (void)Read(text, base, number);  // 0 without digits
    return ToSigned(number);
}

uint32_t StrToUInt32(const char* text, int base) {
    long long number = 0;
    (void)Read(text, base, number);
    return ToUnsigned(number);
}

bool ScanInt32(const char* text, int32_t& value) {
    long long number = 0;
    if (!Read(text, 0, number)) {
        return false;
    }
    value = ToSigned(number);
    return true;
}

bool ScanUInt32(const char* text, uint32_t& value) {
    long long number = 0;
    if (!Read(text, 10, number)) {
        return false;
    }
    value = ToUnsigned(number);
    return true;
}

int32_t DoubleToInt32(double value) {
    if (std::isnan(value) || value <= -kTwoTo31) {
        return kMin;
    }
    return value >= kTwoTo31 ? kMax : static_cast<int32_t>(value);
}

uint32_t DoubleToUInt32(double value) {
    if (value >= kTwoTo31) {
        return static_cast<uint32_t>(DoubleToInt32(value - kTwoTo31)) + (1U << 31);
    }
    return static_cast<uint32_t>(DoubleToInt32(value));
}

}  // namespace Quenda
