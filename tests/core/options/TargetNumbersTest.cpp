#include "core/options/TargetNumbers.h"

#include <gtest/gtest.h>

namespace Quenda {
namespace {

constexpr int32_t kMax = 2147483647;
constexpr int32_t kMin = -kMax - 1;
constexpr uint32_t kUMax = 4294967295U;

TEST(TargetNumbersTest, TextsAreReadWithTheRangesOfA32BitLong) {
    const struct {
        const char* text;
        bool found;
        int32_t detected;  // signed, base detected
        uint32_t decimal;  // unsigned, decimal
    } cases[] = {
        {"42abc", true, 42, 42},
        {" \t\n\v\f\r+7", true, 7, 7},
        {"0x1F", true, 31, 0},  // "%u" stops at the x
        {"-0X1f", true, -31, 0},
        {"017", true, 15, 17},
        {"08", true, 0, 8},  // no octal digit after the 0
        {"2147483648", true, kMax, 2147483648U},
        {"-2147483649", true, kMin, 2147483647U},
        {"4294967295", true, kMax, kUMax},
        {"-1", true, -1, kUMax},
        {"-4294967295", true, kMin, 1},
        {"-4294967296", true, kMin, kUMax},
        {"99999999999999999999999", true, kMax, kUMax},
        {"0xFFFFFFFF", true, kMax, 0},
        {"", false, 0, 0},
        {"- 1", false, 0, 0},
    };
    for (const auto& c : cases) {
        int32_t number = 99;
        uint32_t unsignedNumber = 99;
        EXPECT_EQ(ScanInt32(c.text, number), c.found) << c.text;
        EXPECT_EQ(ScanUInt32(c.text, unsignedNumber), c.found) << c.text;
        EXPECT_EQ(number, c.found ? c.detected : 99) << c.text;
        EXPECT_EQ(unsignedNumber, c.found ? c.decimal : 99) << c.text;
        EXPECT_EQ(StrToInt32(c.text, 0), c.detected) << c.text;
    }
    EXPECT_EQ(StrToUInt32("0xFFFFFFFF", 0), kUMax);
}

}  // namespace
}  // namespace Quenda
