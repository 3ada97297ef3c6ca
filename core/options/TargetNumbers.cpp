#include "core/options/TargetNumbers.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace Quenda {

namespace {

constexpr uint32_t kMaxUnsigned = std::numeric_limits<uint32_t>::max();
constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
constexpr double kTwoTo31 = 2147483648.0;

struct Digits {
    bool found = false;
    bool negative = false;
    bool overflow = false;
    uint32_t magnitude = 0;
};

// The value of a digit in any base up to 16, or 16 for any other character.
unsigned DigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return static_cast<unsigned>(c - '0');
    }
    if (c >= 'a' && c <= 'f') {
        return static_cast<unsigned>(c - 'a') + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return static_cast<unsigned>(c - 'A') + 10;
    }
    return 16;
}

bool HasHexPrefix(const char* text) {
    return text[0] == '0' && (text[1] == 'x' || text[1] == 'X') && DigitValue(text[2]) < 16;
}

Digits ReadDigits(const char* text, unsigned base) {
    Digits digits;
    text += std::strspn(text, " \t\n\v\f\r");
    if (*text == '-' || *text == '+') {
        digits.negative = *text == '-';
        ++text;
    }
    if ((base == 0 || base == 16) && HasHexPrefix(text)) {
        base = 16;
        text += 2;
    } else if (base == 0) {
        base = *text == '0' ? 8 : 10;
    }
    for (; DigitValue(*text) < base; ++text) {
        const uint64_t next = uint64_t{digits.magnitude} * base + DigitValue(*text);
        digits.found = true;
        digits.overflow = digits.overflow || next > kMaxUnsigned;
        digits.magnitude = static_cast<uint32_t>(next);
    }
    return digits;
}

int32_t ToSigned(const Digits& digits) {
    const int64_t limit = digits.negative ? -int64_t{kMin} : int64_t{kMax};
    if (digits.overflow || digits.magnitude > limit) {
        return digits.negative ? kMin : kMax;
    }
    const int64_t magnitude = digits.magnitude;
    return static_cast<int32_t>(digits.negative ? -magnitude : magnitude);
}

uint32_t ToUnsigned(const Digits& digits) {
    if (digits.overflow) {
        return kMaxUnsigned;
    }
    return digits.negative ? 0U - digits.magnitude : digits.magnitude;
}

}  // namespace

int32_t StrToInt32(const char* text, int base) {
    return ToSigned(ReadDigits(text, static_cast<unsigned>(base)));
}

uint32_t StrToUInt32(const char* text, int base) {
    return ToUnsigned(ReadDigits(text, static_cast<unsigned>(base)));
}

bool ScanInt32(const char* text, int32_t& value) {
    const Digits digits = ReadDigits(text, 0);
    if (digits.found) {
        value = ToSigned(digits);
    }
    return digits.found;
}

bool ScanUInt32(const char* text, uint32_t& value) {
    const Digits digits = ReadDigits(text, 10);
    if (digits.found) {
        value = ToUnsigned(digits);
    }
    return digits.found;
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
