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
}

TEST(OptionsNodeTest, NodeMayBecomeAPartOfWhatItHolds) {
    OptionsNode copy = [] { return OptionsNode(OptionsNode(J("{'o':{'a':1}}"))); }();
    copy = copy.GetNode({"o"});
    EXPECT_EQ(Text(copy.Value()), "{'a':1}");
}

TEST(JsonValueTest, ImpossibleConversionEndsTheProcessWithItsReason) {
    EXPECT_DEATH((void)Json::Value("x").asInt(), "^Value is not convertible to Int\\.\n");
}

}  // namespace
