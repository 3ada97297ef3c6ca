#include "core/options/OptionsNode.h"

#include "tests/core/options/Json.h"

using namespace Quenda;

namespace {

TEST(OptionsNodeTest, MembersAndElementsAreViewedOrNull) {
    const Json::Value doc = J("{'a':1,'n':null,'l':[7,null]}");
    const OptionsNode node(&doc, {3, 4});
    const OptionsNode list = node.GetMember("l");
    EXPECT_EQ(&list.GetElement(0).Value(), &doc["l"][0U]);
    for (const OptionsNode& absent : {node.GetMember("n"), node.GetMember("x"),
                                      node.GetMember(nullptr), list.GetElement(4294967295U)}) {
        EXPECT_TRUE(absent.IsObject());
        EXPECT_EQ(absent.Context(), (OptionsContext{3, 4}));
    }
    EXPECT_TRUE(node.Error().IsAbsent());
    EXPECT_TRUE(list.GetMember("a").Value().isNull());
    EXPECT_STREQ(list.Error().Get(), "Invalid node type: OptionsNode must be object type");
    EXPECT_TRUE(node.GetElement(0).Value().isNull());
    EXPECT_STREQ(node.Error().Get(), "Invalid node type: OptionsNode must be array type");
}

void ExpectPath(const char* document, const OptionsPath& path, const char* outcome) {
    const OptionsNode node(J(document));
    const std::string found = Text(node.GetNode(path).Value());
    EXPECT_EQ(node.Error().Get() + found, outcome) << document;
}

TEST(OptionsNodeTest, PathsFailWithTheReasonAtTheirFirstObstacle) {
    ExpectPath("{'o':{'s':'x'}}", {"o", "s"}, "'x'");
    ExpectPath("[1]", {}, "[1]");
    ExpectPath("{'l':[{'a':1}]}", {"l", "a"}, "non-object OptionsNode down the pathnull");
    ExpectPath("{'n':null}", {"n", "x"}, "empty OptionsNode down the pathnull");
    ExpectPath("{}", {}, "OptionsNode is emptynull");
}

void ExpectMember(const char* document, int32_t asInt, uint32_t asUInt, double asReal,
                  const char* error) {
    const auto expect = [&](auto expected) {
        const OptionsNode node(J(document));
        auto out = expected;
        EXPECT_EQ(node.GetMemberValue(out = 0, "v", decltype(out){99}), *error == '\0');
        EXPECT_EQ(out, expected) << document;
        EXPECT_STREQ(node.Error().Get(), error) << document;
    };
    expect(asInt);
    expect(asUInt);
    expect(asReal);
    expect(static_cast<float>(asReal));
}

TEST(OptionsNodeTest, NumbersComeFromNumbersBooleansAndTextsOrAreTheDefault) {
    ExpectMember("{'v':' 42abc'}", 42, 42, 42.0, "");
    ExpectMember("{'v':'-2147483649'}", INT32_MIN, 2147483647U, -2147483649.0, "");
    ExpectMember("{'v':'0x1F'}", 31, 0, 31.0, "");  // "%u" stops at the x
    ExpectMember("{'v':true}", 1, 1, 1.0, "");
    ExpectMember("{'v':2.75}", 2, 2, 2.75, "");
    ExpectMember("{'v':'abc'}", 99, 99, 99.0, "invalid input string");
    ExpectMember("{'v':[1]}", 99, 99, 99.0, "OptionsNode is not string type");
    ExpectMember("{'v':null}", 99, 99, 99.0, "cannot find the node element");
    ExpectMember("[]", 99, 99, 99.0, "Incorrect Node type for Object or Array operations");
}

TEST(OptionsNodeTest, TextsAreThoseOfTheScalars) {
    Json::Value list = J("[0,4294967295,1.5,'t',true,null,[1],{'a':1}]");
    list[0U] = -7;
    const char* texts[] = {"-7", "4294967295", "1.500000", "t", "true", "", "", "", ""};
    for (uint32_t i = 0; i < 9; ++i) {
        EXPECT_EQ(OptionsNode(&list).GetElementString(i), texts[i]) << i;
    }
    EXPECT_EQ(OptionsNode(&list).GetMemberString("a"), "");
}

TEST(OptionsNodeTest, NodeMayBecomeAPartOfWhatItHolds) {
    OptionsNode copy = [] { return OptionsNode(OptionsNode(J("{'o':{'a':1}}"))); }();
    copy = copy.GetNode({"o"});
    EXPECT_EQ(Text(copy.Value()), "{'a':1}");
}

}  // namespace
