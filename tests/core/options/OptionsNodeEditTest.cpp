#include "core/options/OptionsNodeEdit.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/core/options/Json.h"

namespace Quenda {
namespace {

constexpr char kAddEmpty[] = "Invalid operation: add empty object or itself";
constexpr char kAddToScalar[] =
    "Invalid operation: cannot add object to non-object OptionsNodeEdit";
constexpr char kExists[] = "Invalid operation: object with the same name exists";
constexpr char kNotLeaf[] = "Invalid operation: the child node is not leaf node";
constexpr char kNotObject[] = "Invalid operation: OptionsNodeEdit is not object type";
constexpr char kNoObject[] = "Invalid operation: object does not exist";
constexpr char kNoModify[] = "Invalid operation: cannot modify non-object OptionsNodesEdit";
constexpr char kNoName[] = "Invalid operation: object of the name does not exist";
constexpr char kNoAppend[] =
    "Invalid operation: cannot append to non-array OptionsNodeEdit or append itself";
constexpr char kNoIndex[] = "Invalid operation: array index does not exist";
constexpr char kTooSmall[] =
    "Invalid operation: the array is already smaller than the truncated size";
constexpr char kToSelf[] = "Invalid operation: move object from self to self";
constexpr char kNullMerge[] = "Invalid operation: merge on Null OptionsNode(s)";
constexpr char kNoComment[] = "Null OptionsNodeEdit or invalid comment";
constexpr char kTooDeep[] = "Invalid operation: OptionsNode is nested too deeply";

TEST(OptionsNodeEditTest, PlainNodeBuildsADocumentOfItsOwn) {
    OptionsNodeEdit node;
    EXPECT_TRUE(node.IsObject());
    EXPECT_TRUE(node.SetLeaf("heartbeat_filename", std::string("/var/x"), nullptr));
    EXPECT_TRUE(node.SetLeaf("heartbeat_timeout_sec", 60U, nullptr));
    OptionsNodeEdit copy(node);
    copy = copy;
    EXPECT_TRUE(copy.SetLeaf("heartbeat_timeout_sec", -1, "off"));
    EXPECT_EQ(Text(node.Value()), R"({"heartbeat_filename":"/var/x","heartbeat_timeout_sec":60})");
    EXPECT_EQ(node.Value()["heartbeat_timeout_sec"].type(), Json::uintValue);
    EXPECT_EQ(copy.GetMemberString("heartbeat_timeout_sec"), "-1");
}

// What one edit does to a document: the result, the message, the modified flag and what is left.
TEST(OptionsNodeEditTest, EditsChangeTheDocumentOrSayWhyNot) {
    using Edit = OptionsNodeEdit;
    const OptionsNode one(Json::Value(1));
    const OptionsNode object(Obj({{"a", 2}}));
    const OptionsNode null(nullptr);
    const OptionsNode deep(Nested(1000));
    const struct {
        Json::Value before;
        std::function<bool(Edit&)> edit;
        bool result, modified;
        const char* error;
        const char* after;
    } cases[] = {
        {1, [](Edit& n) { return n.SetLeaf("a", 1, nullptr); }, false, false, kNotObject, "1"},
        {Obj({{"a", Obj({})}}), [](Edit& n) { return n.SetLeaf("a", 1, nullptr); }, false, false,
         kNotLeaf, R"({"a":{}})"},
        {Obj({}), [](Edit& n) { return n.SetLeaf("a", static_cast<char*>(nullptr), nullptr); },
         false, false, kNotLeaf, R"({"a":null})"},
        {Obj({{"a", "x"}}), [](Edit& n) { return n.SetLeaf("a", 7U, nullptr); }, true, true, "",
         R"({"a":7})"},
        {Json::Value(), [](Edit& n) { return n.SetLeaf("a", 0.5, nullptr); }, true, true, "",
         R"({"a":0.5})"},
        {Arr({}), [&](Edit& n) { return n.AddMember("a", null, true); }, false, false, kAddToScalar,
         "[]"},
        {Obj({}), [&](Edit& n) { return n.AddMember("a", null, true); }, false, false, kAddEmpty,
         "{}"},
        {Obj({}), [](Edit& n) { return n.AddMember("a", n, true); }, false, false, kAddEmpty, "{}"},
        {Obj({{"a", Json::Value()}}), [&](Edit& n) { return n.AddMember("a", one, false); }, false,
         false, kExists, R"({"a":null})"},
        {Obj({{"a", "x"}}), [&](Edit& n) { return n.AddMember("a", object, true); }, true, true, "",
         R"({"a":{"a":2}})"},
        {Obj({}), [&](Edit& n) { return n.AddMember("a", deep, true); }, false, false, kTooDeep,
         "{}"},
        {1, [&](Edit& n) { return n.ModifyMember("a", object); }, false, false, kNoModify, "1"},
        {Obj({{"a", 1}}), [&](Edit& n) { return n.ModifyMember("a", one); }, false, false, kNoName,
         R"({"a":1})"},
        {Obj({{"a", 1}}), [&](Edit& n) { return n.ModifyMember("a", object); }, true, true, "",
         R"({"a":{"a":2}})"},
        {Obj({}), [](Edit& n) { return n.Append(OptionsNode()); }, false, false, kNoAppend, "{}"},
        {Arr({1}), [](Edit& n) { return n.Append(n); }, false, false, kNoAppend, "[1]"},
        {Arr({1}), [](Edit& n) { return n.Append(OptionsNode(&n.Value())); }, true, true, "",
         "[1,[1]]"},
        {Json::Value(), [&](Edit& n) { return n.Append(one); }, true, true, "", "[1]"},
        {Arr({Json::Value()}), [&](Edit& n) { return n.SetElement(0, one); }, false, false,
         kNoIndex, "[null]"},
        {Arr({"x"}), [&](Edit& n) { return n.SetElement(1, one); }, false, false, kNoIndex,
         R"(["x"])"},
        {Arr({"x"}), [&](Edit& n) { return n.SetElement(0, one); }, true, true, "", "[1]"},
        {Arr({1, 2}), [](Edit& n) { return n.Truncate(2); }, false, false, kTooSmall, "[1,2]"},
        {Json::Value(), [](Edit& n) { return n.Truncate(0); }, false, false, kTooSmall, "null"},
        {Arr({1, 2, 3}), [](Edit& n) { return n.Truncate(1); }, true, false, "", "[1]"},
        {Obj({}), [](Edit& n) { return n.RemoveMember("a"); }, false, false, kNoObject, "{}"},
        {Obj({{"a", Json::Value()}}), [](Edit& n) { return n.RemoveMember("a"); }, false, false, "",
         "{}"},
        {Obj({{"a", 1}}), [](Edit& n) { return n.RemoveMember("a"); }, true, true, "", "{}"},
        {Obj({}), [](Edit& n) { return n.RenameMember("b", "a", false); }, false, false, kNoObject,
         "{}"},
        {1, [](Edit& n) { return n.RenameMember("b", "a", true); }, false, false, kNoObject, "1"},
        {Obj({{"b", 1}}), [](Edit& n) { return n.RenameMember("b", "a", true); }, true, true, "",
         R"({"b":null})"},
        {Obj({{"a", 1}, {"b", "x"}}), [](Edit& n) { return n.RenameMember("b", "a", false); }, true,
         true, "", R"({"b":1})"},
        {Obj({{"a", 1}}), [](Edit& n) { return n.RenameMember("a", "a", false); }, true, true, "",
         R"({"a":1})"},
        {1, [](Edit& n) { return n.SetComment(nullptr); }, false, false, kNoComment, "1"},
        {1, [](Edit& n) { return n.SetComment("why"); }, true, false, "", "1"},
        {Obj({{"a", 1}, {"o", Obj({{"x", 1}})}}),
         [](Edit& n) {
             return n.Overlay(OptionsNode(Obj({{"a", Json::Value()}, {"o", Obj({{"y", 2}})}})), 0);
         },
         false, true, "", R"({"a":1,"o":{"y":2}})"},
        {Obj({{"o", Obj({{"x", 1}})}}),
         [](Edit& n) {
             return n.Overlay(OptionsNode(Obj({{"o", Obj({{"y", 2}})}})), 1);
         },
         false, true, "", R"({"o":{"x":1,"y":2}})"},
        {1, [](Edit& n) { return n.Overlay(OptionsNode(), 1); }, false, false, kNullMerge, "1"},
        {1, [](Edit& n) { return n.Merge(OptionsNode(), OptionsNode()); }, false, false, kNullMerge,
         "1"},
    };
    for (const auto& c : cases) {
        Json::Value document(c.before);
        bool modified = false;
        Edit node(&document, &modified);
        const auto line = &c - cases;
        EXPECT_EQ(c.edit(node), c.result) << line;
        EXPECT_EQ(modified, c.modified) << line;
        EXPECT_STREQ(node.Error().Get(), c.error) << line;
        EXPECT_EQ(Text(document), c.after) << line;
        Edit none(nullptr, &modified);
        EXPECT_FALSE(c.edit(none)) << line;
        EXPECT_FALSE(none.Error().IsAbsent()) << line;
    }
}

TEST(OptionsNodeEditTest, MembersMoveBetweenNodesButNotIntoThemselves) {
    Json::Value doc = Obj({{"a", Obj({{"b", Obj({{"c", 1}})}})}, {"n", Json::Value()}});
    bool modified = false;
    OptionsNodeEdit root(&doc, nullptr);
    OptionsNodeEdit inner(&doc["a"]["b"], &modified);
    OptionsNodeEdit again(&doc, nullptr);
    EXPECT_FALSE(root.MoveMember(root, "x", "absent", true));
    EXPECT_STREQ(root.Error().Get(), kToSelf);
    EXPECT_FALSE(root.MoveMember(inner, "x", "absent", true));
    EXPECT_STREQ(root.Error().Get(), kNoObject);
    EXPECT_TRUE(inner.Error().IsAbsent());
    EXPECT_FALSE(root.MoveMember(inner, "c", "n", true));
    EXPECT_STREQ(inner.Error().Get(), kAddEmpty);
    EXPECT_FALSE(root.MoveMember(inner, "x", "a", true));  // into what is moved
    EXPECT_STREQ(inner.Error().Get(), kToSelf);
    EXPECT_FALSE(inner.MoveMember(root, "a", "c", true));  // over what holds it
    EXPECT_FALSE(root.MoveMember(again, "a", "a", true));  // the same member by another node
    EXPECT_EQ(Text(doc), R"({"a":{"b":{"c":1}},"n":null})");
    EXPECT_FALSE(inner.MoveMember(root, "a", "c", false));
    EXPECT_STREQ(root.Error().Get(), kExists);
    EXPECT_FALSE(modified);
    EXPECT_TRUE(inner.MoveMember(root, "n", "c", true));
    EXPECT_TRUE(modified);
    EXPECT_EQ(Text(doc), R"({"a":{"b":{}},"n":1})");
}

TEST(OptionsNodeEditTest, SameLineCommentsStayUnlessTheSourceBringsOne) {
    Json::Value doc = Obj({{"a", 1}, {"b", 2}});
    OptionsNodeEdit node(&doc, nullptr);
    const auto comment = [&](const char* name) {
        return doc[name].getComment(Json::commentAfterOnSameLine);
    };
    ASSERT_TRUE(node.SetLeaf("a", 1, "first"));
    ASSERT_TRUE(node.SetLeaf("a", "x", nullptr));
    ASSERT_TRUE(node.AddMember("a", OptionsNode(Json::Value(3)), true));
    EXPECT_EQ(comment("a"), "//first");
    ASSERT_TRUE(OptionsNodeEdit(&doc["b"], nullptr).SetComment(""));
    ASSERT_TRUE(node.AddMember("a", OptionsNode(&doc["b"]), true));
    EXPECT_EQ(comment("a"), "//");
    ASSERT_TRUE(node.SetLeaf("a", 1, "kept"));
    ASSERT_TRUE(node.RenameMember("c", "a", false));
    EXPECT_EQ(comment("c"), "//kept");
}

TEST(OptionsNodeEditTest, SourcesMayBePartsOfWhatChanges) {
    Json::Value doc = Obj({{"a", Obj({{"a", Obj({{"x", 1}})}})}});
    OptionsNodeEdit root(&doc, nullptr);
    (void)root.Overlay(OptionsNode(&doc["a"]), 0);
    EXPECT_EQ(Text(doc), R"({"a":{"x":1}})");
    OptionsNodeEdit inner(&doc["a"], nullptr);
    EXPECT_TRUE(inner.AddMember("whole", root, false));
    EXPECT_TRUE(inner.Merge(root, root));
    EXPECT_EQ(Text(doc),
              R"({"a":{"a":{"whole":{"a":{"x":1}},"x":1},"whole":{"a":{"x":1}},"x":1}})");
    EXPECT_TRUE(root.AddMember("a", OptionsNode(&doc["a"]["a"]["x"]), true));
    EXPECT_EQ(Text(doc), R"({"a":1})");
    Json::Value gaps;
    gaps[5U] = 1;
    EXPECT_TRUE(OptionsNodeEdit(&gaps, nullptr).Truncate(3));
    EXPECT_EQ(Text(gaps), "[null,null,null]");
}

}  // namespace
}  // namespace Quenda
