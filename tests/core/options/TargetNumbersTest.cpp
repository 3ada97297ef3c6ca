#include "core/options/TargetNumbers.h"

#include <gtest/gtest.h>

namespace Quenda {
namespace {

TEST(TargetNumbersTest, TextsAreReadWithTheRangesOfA32BitLong) {
    const struct {
        const char* text;
        int32_t detected;  // signed, base detected
        uint32_t decimal;  // unsigned, decimal
    } cases[] = {
        {" \t\n\v\f\r+42abc", 42, 42},
        {"-0X1f", -31, 0},  // "%u" stops at the x
        {" 017", 15, 17},
        {"08", 0, 8},  // no octal digit after the 0
        {"0b1", 0, 0},
        {"-2147483649", INT32_MIN, INT32_MAX},
        {"4294967296", INT32_MAX, UINT32_MAX},
        {"-4294967295", INT32_MIN, 1},
        {"-4294967296", INT32_MIN, UINT32_MAX},
        {"99999999999999999999", INT32_MAX, UINT32_MAX},
    };
    int32_t number = 99;
    EXPECT_FALSE(ScanInt32("- 1", number) || ScanInt32("", number));
    EXPECT_EQ(number, 99);
    for (const auto& c : cases) {
        uint32_t decimal = 99;
        EXPECT_TRUE(ScanInt32(c.text, number) && ScanUInt32(c.text, decimal)) << c.text;
        EXPECT_TRUE(number == c.detected && decimal == c.decimal)
            << c.text << " gives " << number << " and " << decimal;
    }
}

}  // namespace
}  // namespace Quenda
