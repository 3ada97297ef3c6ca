#include "core/options/OptionsNode.h"

#include <unistd.h>

#include "core/options/JsonValue.h"
#include "tests/core/options/Json.h"

using namespace Quenda;

namespace {

TEST(OptionsNodeTest, LookupsViewTheDocumentAndKeepTheContext) {
    const Json::Value doc = J("{'a':[7]}");
    const OptionsNode node(&doc, {3, 4});
    const OptionsNode list = OptionsNode(node).GetMember("a");
    EXPECT_EQ(&list.GetElement(0).Value(), &doc["a"][0U]);
    for (const OptionsNode& found :
         {node.GetMember(nullptr), node.GetNode({"a"}), node.GetNode({"x"}), list.GetElement(0),
          list.GetMember("x")}) {
        EXPECT_EQ(found.Context(), (OptionsContext{3, 4}));
    }
}

TEST(OptionsNodeTest, NodeMayBecomeAPartOfWhatItHolds) {
    OptionsNode copy = [] { return OptionsNode(OptionsNode(J("{'o':{'a':1}}"))); }();
    copy = copy.GetNode({"o"});
    EXPECT_EQ(Text(copy.Value()), "{'a':1}");
}

TEST(JsonValueTest, ImpossibleConversionEndsTheProcessWithItsReason) {
    const auto convert = [](auto conversion, const Json::Value& value) {
        (void)dup2(STDERR_FILENO, STDOUT_FILENO);  // which gets the complaint
        (void)conversion(value);
    };
    EXPECT_DEATH((void)Json::Value(1)["a"], "requires objectValue\n");
    EXPECT_DEATH((void)Json::Value("x").asInt(), "^Value is not convertible to Int\\.\n");
    const auto commented = [](Json::Value value) {
        value.setComment(std::string("# x"), Json::commentAfterOnSameLine);
        return JsonValue::AsInt(value);
    };
    EXPECT_DEATH(convert(commented, "x"),
                 "^Quenda workaround: Comments must start with /\n"
                 "Quenda workaround: Type is not convertible to int\n");
    EXPECT_DEATH(convert(JsonValue::AsUInt, "x"), "Type is not convertible to uint\n");
    EXPECT_DEATH(convert(JsonValue::AsDouble, "x"), "Type is not convertible to double\n");
    EXPECT_DEATH(convert(JsonValue::AsText, 1), "Type is not convertible to string\n");
}

}  // namespace
