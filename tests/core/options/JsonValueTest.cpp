#include "core/options/JsonValue.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>

#include "json/writer.h"
#include "tests/core/options/Json.h"
#include "tests/support/Capture.h"

namespace Quenda::JsonValue {
namespace {

constexpr char kSigned[] = "Quenda workaround: integer out of signed integer range\n";
constexpr char kRealSigned[] = "Quenda workaround: Real out of signed integer range\n";
constexpr char kRealUnsigned[] = "Quenda workaround: Real out of unsigned integer range\n";
constexpr char kNegative[] =
    "Quenda workaround: Negative integer can not be converted to unsigned integer\n";

TEST(JsonValueTest, NumbersOutOfRangeAreComplainedAboutAndConverted) {
    const struct {
        Json::Value value;
        int32_t asInt;
        const char* intComplaint;
        uint32_t asUInt;
        const char* uintComplaint;
    } cases[] = {
        {Json::Value(), 0, "", 0, ""},
        {Json::Value(true), 1, "", 1, ""},
        {Json::Value(-5), -5, "", 4294967291U, kNegative},
        {Json::Value(2147483646U), 2147483646, "", 2147483646U, ""},
        {Json::Value(2147483647U), 2147483647, kSigned, 2147483647U, ""},
        {Json::Value(4294967295U), -1, kSigned, 4294967295U, ""},
        {Json::Value(2147483647.0), 2147483647, "", 2147483647U, ""},
        {Json::Value(2147483647.5), 2147483647, kRealSigned, 2147483647U, ""},
        {Json::Value(4294967295.5), 2147483647, kRealSigned, 4294967295U, kRealUnsigned},
        {Json::Value(-1.5), -1, "", 4294967295U, kRealUnsigned},
        {Json::Value(1e300), 2147483647, kRealSigned, 4294967295U, kRealUnsigned},
        {Json::Value(-1e300), -2147483647 - 1, kRealSigned, 2147483648U, kRealUnsigned},
        {Json::Value(-0.5), 0, "", 0, kRealUnsigned},
        {Json::Value(NAN), -2147483647 - 1, kRealSigned, 2147483648U, kRealUnsigned},
    };
    for (const auto& c : cases) {
        Capture output(1);
        EXPECT_EQ(AsInt(c.value), c.asInt) << c.value;
        EXPECT_EQ(AsUInt(c.value), c.asUInt) << c.value;
        EXPECT_EQ(output.Stop(), std::string(c.intComplaint) + c.uintComplaint) << c.value;
    }
}

TEST(JsonValueTest, UnsuitableTypesAreComplainedAboutAndEndTheProcess) {
    const struct {
        void (*convert)(const Json::Value&);
        const char *value, *complaint;
    } cases[] = {
        {[](const Json::Value& v) { (void)AsInt(v); }, "'1'",
         "^Quenda workaround: Type is not convertible to int\n"},
        {[](const Json::Value& v) { (void)AsUInt(v); }, "[]", "not convertible to uint\n"},
        {[](const Json::Value& v) { (void)AsDouble(v); }, "{}", "not convertible to double\n"},
        {[](const Json::Value& v) { (void)AsText(v); }, "1", "not convertible to string\n"},
        // One of the library's own checks, which end the process in every build type.
        {[](const Json::Value& v) { (void)v[0U]; }, "1", "requires arrayValue"},
    };
    for (const auto& c : cases) {
        const auto convert = [&c] {
            dup2(2, 1);  // what a death test looks at
            c.convert(J(c.value));
        };
        EXPECT_EXIT(convert(), testing::KilledBySignal(SIGABRT), c.complaint);
    }
}

TEST(JsonValueTest, CommentWithoutASlashIsComplainedAboutAndKept) {
    Json::Value value(1);
    Capture output(1);
    SetSameLineComment(value, "# why");
    EXPECT_EQ(output.Stop(), "Quenda workaround: Comments must start with /\n");
    EXPECT_EQ(value.getComment(Json::commentAfterOnSameLine), "# why");
}

}  // namespace
}  // namespace Quenda::JsonValue
