#include "core/options/JsonValue.h"

#include <unistd.h>

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

TEST(JsonValueTest, CommentThatIsNoneIsComplainedAboutAndKept) {
    Json::Value value(1);
    Capture output(1);
    SetSameLineComment(value, "# why");
    EXPECT_EQ(output.Stop(), "Quenda workaround: Comments must start with /\n");
    EXPECT_EQ(value.getComment(Json::commentAfterOnSameLine), "# why");
}

template <typename Convert>
void End(Convert convert, const char* value) {
    dup2(2, 1);  // what a death test looks at
    (void)convert(J(value));
}

TEST(JsonValueTest, UnsuitableTypesAreComplainedAboutAndEndTheProcess) {
    const testing::KilledBySignal aborted(SIGABRT);
    EXPECT_EXIT(End(AsInt, "''"), aborted, "^Quenda workaround: Type is not convertible to int\n");
    EXPECT_EXIT(End(AsUInt, "[]"), aborted, "Type is not convertible to uint\n");
    EXPECT_EXIT(End(AsDouble, "{}"), aborted, "Type is not convertible to double\n");
    EXPECT_EXIT(End(AsText, "1"), aborted, "Type is not convertible to string\n");
}

}  // namespace
