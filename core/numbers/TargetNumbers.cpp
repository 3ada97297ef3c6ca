#include "core/numbers/TargetNumbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace Quenda {

namespace {

constexpr double kTwoTo31 = 2147483648.0;

// Reads with strtoll(3): a 64-bit number tells which 32-bit limit was passed. The base is detected
// here, since newer C libraries than the terminal's detect more of them ("0b").
std::optional<long long> Scan(const char* text, int base) {
    if (base == 0) {
        const char* digits = text + strspn(text, " \t\n\v\f\r");
        digits += *digits == '-' || *digits == '+' ? 1 : 0;
        const bool hex = digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X');
        base = hex ? 16 : (*digits == '0' ? 8 : 10);
    }
    char* end = nullptr;
    const long long number = strtoll(text, &end, base);
    return end == text ? std::nullopt : std::optional(number);
}

}  // namespace

bool ScanInt32(const char* text, int32_t& value, int base) {
    const auto number = Scan(text, base);
    if (!number) {
        return false;
    }
    value = static_cast<int32_t>(std::clamp<long long>(*number, INT32_MIN, INT32_MAX));
    return true;
}

bool ScanUInt32(const char* text, uint32_t& value, int base) {
    constexpr long long kLimit = UINT32_MAX;
    const auto number = Scan(text, base);
    if (!number) {
        return false;
    }
    value = *number < -kLimit || *number > kLimit ? UINT32_MAX : static_cast<uint32_t>(*number);
    return true;
}

int32_t StrToInt32(const char* text, int base) {
    int32_t number = 0;
    (void)ScanInt32(text, number, base);
    return number;
}

uint32_t StrToUInt32(const char* text, int base) {
    uint32_t number = 0;
    (void)ScanUInt32(text, number, base);
    return number;
}

int32_t DoubleToInt32(double value) {
    if (std::isnan(value) || value <= -kTwoTo31) {
        return INT32_MIN;
    }
    return value >= kTwoTo31 ? INT32_MAX : static_cast<int32_t>(value);
}

uint32_t DoubleToUInt32(double value) {
    if (value >= kTwoTo31) {
        return static_cast<uint32_t>(DoubleToInt32(value - kTwoTo31)) + (1U << 31);
    }
    return static_cast<uint32_t>(DoubleToInt32(value));
}

}  // namespace Quenda
