#include "core/options/JsonValue.h"

#include <cmath>

#include "tests/core/options/Json.h"
#include "tests/support/Capture.h"

using namespace Quenda::JsonValue;

namespace {

TEST(JsonValueTest, NumbersOutOfRangeAreComplainedAboutAndConverted) {
    const std::string negative =
        "Quenda workaround: Negative integer can not be converted to unsigned integer\n";
    const std::string inSigned = "Quenda workaround: integer out of signed integer range\n";
    const std::string realSigned = "Quenda workaround: Real out of signed integer range\n";
    const std::string realUnsigned = "Quenda workaround: Real out of unsigned integer range\n";
    // The value, what it is as an integer with and without a sign, and the complaints.
    const std::tuple<Json::Value, int32_t, uint32_t, std::string> cases[] = {
        {-5, -5, 4294967291U, negative},
        {2147483646U, 2147483646, 2147483646U, ""},
        {2147483647U, 2147483647, 2147483647U, inSigned},
        {4294967295U, -1, 4294967295U, inSigned},
        {-1.5, -1, 4294967295U, realUnsigned},
        {NAN, INT32_MIN, 2147483648U, realSigned + realUnsigned},
    };
    for (const auto& [value, asInt, asUInt, complaints] : cases) {
        Capture output(1);
        EXPECT_EQ(AsInt(value), asInt) << value;
        EXPECT_EQ(AsUInt(value), asUInt) << value;
        EXPECT_EQ(output.Stop(), complaints) << value;
    }
}

TEST(JsonValueTest, ImpossibleConversionEndsTheProcessWithItsReason) {
    EXPECT_DEATH((void)Json::Value("x").asInt(), "^Value is not convertible to Int\\.\n$");
}

}  // namespace
