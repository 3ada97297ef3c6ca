#include "core/options/OptionsNodeEdit.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/core/options/Json.h"

namespace Quenda {
namespace {

using Edit = OptionsNodeEdit;

constexpr char kAddEmpty[] = "Invalid operation: add empty object or itself";
constexpr char kNoAdd[] = "Invalid operation: cannot add object to non-object OptionsNodeEdit";
constexpr char kExists[] = "Invalid operation: object with the same name exists";
constexpr char kNotLeaf[] = "Invalid operation: the child node is not leaf node";
constexpr char kNotObject[] = "Invalid operation: OptionsNodeEdit is not object type";
constexpr char kNoObject[] = "Invalid operation: object does not exist";
constexpr char kNoModify[] = "Invalid operation: cannot modify non-object OptionsNodesEdit";
constexpr char kNoName[] = "Invalid operation: object of the name does not exist";
constexpr char kNoAppend[] =
    "Invalid operation: cannot append to non-array OptionsNodeEdit or append itself";
constexpr char kNoIndex[] = "Invalid operation: array index does not exist";
constexpr char kSmall[] = "Invalid operation: the array is already smaller than the truncated size";
constexpr char kToSelf[] = "Invalid operation: move object from self to self";
constexpr char kNullMerge[] = "Invalid operation: merge on Null OptionsNode(s)";
constexpr char kNoComment[] = "Null OptionsNodeEdit or invalid comment";
constexpr char kTooDeep[] = "Invalid operation: OptionsNode is nested too deeply";

TEST(OptionsNodeEditTest, PlainNodeBuildsADocumentOfItsOwn) {
    Edit node;
    EXPECT_TRUE(node.IsObject());
    EXPECT_TRUE(node.SetLeaf("heartbeat_filename", std::string("/x"), nullptr));
    EXPECT_TRUE(node.SetLeaf("heartbeat_timeout_sec", 60U, nullptr));
    Edit copy(node);
    EXPECT_TRUE(copy.SetLeaf("heartbeat_timeout_sec", -1, nullptr));
    EXPECT_EQ(Text(node.Value()), "{'heartbeat_filename':'/x','heartbeat_timeout_sec':60}");
    EXPECT_EQ(node.Value()["heartbeat_timeout_sec"].type(), Json::uintValue);
    EXPECT_EQ(copy.GetMemberString("heartbeat_timeout_sec"), "-1");
}

TEST(OptionsNodeEditTest, EditsChangeTheDocumentOrSayWhyNot) {
    const OptionsNode one(J("1"));
    const OptionsNode object(J("{'a':2}"));
    const OptionsNode null(nullptr);
    const OptionsNode deep(Nested(1000));
    const OptionsNode over(J("{'a':null,'o':{'y':2}}"));
    const char* const noText = nullptr;
    enum Outcome { kRefused, kDone, kDoneUnmarked, kDoneButFalse };
    const struct {
        const char* before;
        std::function<bool(Edit&)> edit;
        Outcome outcome;
        const char *error, *after;
    } cases[] = {
        {"1", [&](Edit& n) { return n.SetLeaf("a", 1, noText); }, kRefused, kNotObject, "1"},
        {"{'a':{}}", [&](Edit& n) { return n.SetLeaf("a", 1, noText); }, kRefused, kNotLeaf,
         "{'a':{}}"},
        {"{}", [&](Edit& n) { return n.SetLeaf("a", noText, noText); }, kRefused, kNotLeaf,
         "{'a':null}"},
        {"{'a':'x'}", [&](Edit& n) { return n.SetLeaf("a", 7U, noText); }, kDone, "", "{'a':7}"},
        {"null", [&](Edit& n) { return n.SetLeaf("a", 0.5, noText); }, kDone, "", "{'a':0.5}"},
        {"[]", [&](Edit& n) { return n.AddMember("a", null, true); }, kRefused, kNoAdd, "[]"},
        {"{}", [&](Edit& n) { return n.AddMember("a", null, true); }, kRefused, kAddEmpty, "{}"},
        {"{}", [](Edit& n) { return n.AddMember("a", n, true); }, kRefused, kAddEmpty, "{}"},
        {"{'a':null}", [&](Edit& n) { return n.AddMember("a", one, false); }, kRefused, kExists,
         "{'a':null}"},
        {"{'a':1}", [&](Edit& n) { return n.AddMember("a", object, true); }, kDone, "",
         "{'a':{'a':2}}"},
        {"{}", [&](Edit& n) { return n.AddMember("a", deep, true); }, kRefused, kTooDeep, "{}"},
        {"1", [&](Edit& n) { return n.ModifyMember("a", object); }, kRefused, kNoModify, "1"},
        {"{}", [&](Edit& n) { return n.ModifyMember("b", object); }, kRefused, kNoName, "{}"},
        {"{}", [&](Edit& n) { return n.ModifyMember("a", object); }, kDone, "", "{'a':{'a':2}}"},
        {"{}", [&](Edit& n) { return n.Append(one); }, kRefused, kNoAppend, "{}"},
        {"[1]", [](Edit& n) { return n.Append(n); }, kRefused, kNoAppend, "[1]"},
        {"[1]", [](Edit& n) { return n.Append(OptionsNode(&n.Value())); }, kDone, "", "[1,[1]]"},
        {"[null]", [&](Edit& n) { return n.SetElement(0, one); }, kRefused, kNoIndex, "[null]"},
        {"['x']", [&](Edit& n) { return n.SetElement(1, one); }, kRefused, kNoIndex, "['x']"},
        {"['x']", [&](Edit& n) { return n.SetElement(0, one); }, kDone, "", "[1]"},
        {"[1,2]", [](Edit& n) { return n.Truncate(2); }, kRefused, kSmall, "[1,2]"},
        {"[1,2,3]", [](Edit& n) { return n.Truncate(1); }, kDoneUnmarked, "", "[1]"},
        {"{}", [](Edit& n) { return n.RemoveMember("a"); }, kRefused, kNoObject, "{}"},
        {"{'a':null}", [](Edit& n) { return n.RemoveMember("a"); }, kRefused, "", "{}"},
        {"{'a':1}", [](Edit& n) { return n.RemoveMember("a"); }, kDone, "", "{}"},
        {"{}", [](Edit& n) { return n.RenameMember("b", "a", false); }, kRefused, kNoObject, "{}"},
        {"{'b':1}", [](Edit& n) { return n.RenameMember("b", "a", true); }, kDone, "",
         "{'b':null}"},
        {"{'a':1,'b':'x'}", [](Edit& n) { return n.RenameMember("b", "a", false); }, kDone, "",
         "{'b':1}"},
        {"{'a':1}", [](Edit& n) { return n.RenameMember("a", "a", false); }, kDone, "", "{'a':1}"},
        {"1", [&](Edit& n) { return n.SetComment(noText); }, kRefused, kNoComment, "1"},
        {"1", [](Edit& n) { return n.SetComment("why"); }, kDoneUnmarked, "", "1"},
        {"{'a':1,'o':{'x':1}}", [&](Edit& n) { return n.Overlay(over, 0); }, kDoneButFalse, "",
         "{'a':1,'o':{'y':2}}"},
        {"1", [](Edit& n) { return n.Overlay(OptionsNode(), 1); }, kRefused, kNullMerge, "1"},
        {"1", [&](Edit& n) { return n.Merge(OptionsNode(), null); }, kRefused, kNullMerge, "1"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases << ", " << c.before);
        Json::Value document = J(c.before);
        bool modified = false;
        Edit node(&document, &modified);
        EXPECT_EQ(c.edit(node), c.outcome == kDone || c.outcome == kDoneUnmarked);
        EXPECT_EQ(modified, c.outcome == kDone || c.outcome == kDoneButFalse);
        EXPECT_STREQ(node.Error().Get(), c.error);
        EXPECT_EQ(Text(document), c.after);
        Edit none(nullptr, &modified);
        EXPECT_FALSE(c.edit(none));
        EXPECT_FALSE(none.Error().IsAbsent());
    }
}

TEST(OptionsNodeEditTest, MembersMoveBetweenNodesButNotIntoThemselves) {
    Json::Value doc = J("{'a':{'b':{'c':1}},'n':null}");
    bool modified = false;
    Edit root(&doc, nullptr), again(&doc, nullptr), inner(&doc["a"]["b"], &modified);
    EXPECT_FALSE(root.MoveMember(root, "x", "absent", true));
    EXPECT_STREQ(root.Error().Get(), kToSelf);
    EXPECT_FALSE(root.MoveMember(inner, "x", "absent", true));
    EXPECT_STREQ(root.Error().Get(), kNoObject);
    EXPECT_FALSE(root.MoveMember(inner, "x", "a", true));  // into what is moved
    EXPECT_STREQ(inner.Error().Get(), kToSelf);
    EXPECT_FALSE(inner.MoveMember(root, "a", "c", true));  // over what holds it
    EXPECT_FALSE(root.MoveMember(again, "a", "a", true));  // the same member by another node
    EXPECT_FALSE(inner.MoveMember(root, "a", "c", false));
    EXPECT_STREQ(root.Error().Get(), kExists);
    EXPECT_FALSE(modified);
    EXPECT_TRUE(inner.MoveMember(root, "n", "c", true));
    EXPECT_TRUE(modified);
    EXPECT_EQ(Text(doc), "{'a':{'b':{}},'n':1}");
}

TEST(OptionsNodeEditTest, SameLineCommentStaysUnlessTheSourceBringsOne) {
    Json::Value doc = J("{'a':1,'b':2}");
    Edit node(&doc, nullptr);
    EXPECT_TRUE(node.SetLeaf("a", 1, "first") && node.SetLeaf("a", "x", nullptr));
    EXPECT_TRUE(node.AddMember("a", OptionsNode(J("3")), true));
    EXPECT_EQ(doc["a"].getComment(Json::commentAfterOnSameLine), "//first");
    EXPECT_TRUE(Edit(&doc["b"], nullptr).SetComment(""));
    EXPECT_TRUE(node.AddMember("a", OptionsNode(&doc["b"]), true));
    EXPECT_TRUE(node.RenameMember("c", "a", false));
    EXPECT_EQ(doc["c"].getComment(Json::commentAfterOnSameLine), "//");
}

TEST(OptionsNodeEditTest, SourcesMayBePartsOfWhatChanges) {
    Json::Value doc = J("{'a':{'a':{'x':1}}}");
    Edit root(&doc, nullptr), inner(&doc["a"], nullptr);
    (void)root.Overlay(OptionsNode(&doc["a"]), 0);
    EXPECT_EQ(Text(doc), "{'a':{'x':1}}");
    EXPECT_TRUE(inner.AddMember("w", root, false));
    EXPECT_TRUE(inner.Merge(root, root));
    EXPECT_EQ(Text(doc), "{'a':{'a':{'w':{'a':{'x':1}},'x':1},'w':{'a':{'x':1}},'x':1}}");
    EXPECT_TRUE(root.AddMember("a", OptionsNode(&doc["a"]["a"]["x"]), true));
    EXPECT_EQ(Text(doc), "{'a':1}");
    Json::Value gaps;
    gaps[5U] = 1;
    EXPECT_TRUE(Edit(&gaps, nullptr).Truncate(3));
    EXPECT_EQ(Text(gaps), "[null,null,null]");
}

}  // namespace
}  // namespace Quenda
