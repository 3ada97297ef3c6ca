#include "core/options/OptionsNodeEdit.h"
#include "tests/core/options/Json.h"

using namespace Quenda;

namespace {

constexpr char kType[] = "Invalid operation: cannot change type of existing OptionsNodeEdit";
constexpr char kIds[] = "/a: Array IDs type does not match destination type";
constexpr char kNoArray[] = "/a: Cannot merge array to non-array";
constexpr char kManyIds[] = ": Multiple elements in array IDs";
constexpr char kCannotCompare[] = "[0]: Array elements not comparable";

// What is merged by IDs that mirror it, is the model's (OptionsModelTest).
TEST(OptionsMergeTest, ChangesAreMergedOrTheFirstObstacleNamed) {
    const struct {
        const char *before, *source, *ids, *error, *after;
    } cases[] = {
        {"{'a':5}", "{'a':2.5,'b':null}", "null", "", "{'a':2.5,'b':null}"},
        {"{'b':5}", "{'a':1,'b':true}", "null", kType, "{'a':1,'b':5}"},  // no way back
        {"{'a':{}}", "{'a':{'b':6}}", "{'a':[]}", kIds, "{'a':{}}"},
        {"{'a':{}}", "{'a':{}}", "{'a':[]}", "", "{'a':{}}"},  // no member is looked up
        {"{'a':null}", "{'a':[1]}", "{'a':{}}", kNoArray, "{'a':null}"},
        {"null", "[1]", "[1,1]", kManyIds, "null"},
        {"[{'i':1}]", "[{'i':2}]", "[{'i':true}]", kCannotCompare, "[{'i':1}]"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.source << " into " << c.before);
        Json::Value document = J(c.before);
        bool modified = false;
        OptionsNodeEdit node(&document, &modified);
        (void)node.SetComment(nullptr);  // leaves an earlier message
        EXPECT_EQ(node.Merge(OptionsNode(J(c.source)), OptionsNode(J(c.ids))), *c.error == '\0');
        EXPECT_STREQ(node.Error().Get(), c.error);
        EXPECT_EQ(Text(document), c.after);
        EXPECT_TRUE(modified);
    }
}

TEST(OptionsMergeTest, OverlayReplacesBelowItsDepthErasesNothingAndGivesFalse) {
    Json::Value document = J("{'a':1,'o':{'w':1,'x':{'y':1}}}");
    bool modified = false;
    OptionsNodeEdit node(&document, &modified);
    EXPECT_FALSE(node.SetComment(nullptr) || node.Error().IsAbsent());
    node.ClearError();
    EXPECT_FALSE(node.Overlay(OptionsNode(J("{'a':null,'o':{'x':{'z':2}}}")), 1));
    EXPECT_TRUE(node.Error().IsAbsent() && modified);
    EXPECT_EQ(Text(document), "{'a':1,'o':{'w':1,'x':{'z':2}}}");
}

TEST(OptionsMergeTest, TreesNestedTooDeeplyAreRefusedUnchanged) {
    Json::Value document = Nested(10000);
    bool modified = false;
    OptionsNodeEdit node(&document, &modified);
    EXPECT_FALSE(node.Merge(node, OptionsNode()) || node.Overlay(node, 9999) || modified);
    EXPECT_STREQ(node.Error().Get(), "Invalid operation: OptionsNode is nested too deeply");
    EXPECT_TRUE(node.Merge(OptionsNode(Nested(1000)), OptionsNode(Nested(1000))));
}

}  // namespace
