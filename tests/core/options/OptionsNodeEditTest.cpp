#include "core/options/OptionsNodeEdit.h"

#include <functional>

#include "tests/core/options/Json.h"

using namespace Quenda;

namespace {

using Edit = OptionsNodeEdit;

constexpr char kInvalid[] = "Invalid operation: ";
// What follows it.
constexpr char kNotObject[] = "OptionsNodeEdit is not object type";
constexpr char kNotLeaf[] = "the child node is not leaf node";
constexpr char kNoAdd[] = "cannot add object to non-object OptionsNodeEdit";
constexpr char kAddEmpty[] = "add empty object or itself";
constexpr char kExists[] = "object with the same name exists";
constexpr char kTooDeep[] = "OptionsNode is nested too deeply";
constexpr char kNoModify[] = "cannot modify non-object OptionsNodesEdit";
constexpr char kNoName[] = "object of the name does not exist";
constexpr char kNoAppend[] = "cannot append to non-array OptionsNodeEdit or append itself";
constexpr char kNoIndex[] = "array index does not exist";
constexpr char kSmall[] = "the array is already smaller than the truncated size";
constexpr char kMissing[] = "object does not exist";
constexpr char kNoMerge[] = "merge on Null OptionsNode(s)";
constexpr char kToSelf[] = "move object from self to self";

TEST(OptionsNodeEditTest, EditsChangeTheDocumentOrSayWhyNot) {
    const OptionsNode one(J("1")), object(J("{'a':2}")), null(nullptr), deep(Nested(1000));
    const char* const noText = nullptr;
    const struct {
        const char* before;
        std::function<bool(Edit&)> edit;
        const char *error, *after;
    } cases[] = {
        {"1", [](Edit& n) { return n.SetLeaf("a", 1, nullptr); }, kNotObject, "1"},
        {"{'a':{}}", [](Edit& n) { return n.SetLeaf("a", 1, nullptr); }, kNotLeaf, "{'a':{}}"},
        {"{}", [&](Edit& n) { return n.SetLeaf("a", noText, nullptr); }, kNotLeaf, "{'a':null}"},
        {"{'a':'x'}", [](Edit& n) { return n.SetLeaf("a", 7U, nullptr); }, "", "{'a':7}"},
        {"{}", [](Edit& n) { return n.SetLeaf("a", true, nullptr); }, "", "{'a':true}"},
        {"[]", [&](Edit& n) { return n.AddMember("a", null, true); }, kNoAdd, "[]"},
        {"{'a':1}", [&](Edit& n) { return n.AddMember("a", null, false); }, kAddEmpty, "{'a':1}"},
        {"{}", [](Edit& n) { return n.AddMember("a", n, true); }, kAddEmpty, "{}"},
        {"{'a':[]}", [&](Edit& n) { return n.AddMember("a", one, false); }, kExists, "{'a':[]}"},
        {"{}", [&](Edit& n) { return n.AddMember("a", deep, true); }, kTooDeep, "{}"},
        {"1", [&](Edit& n) { return n.ModifyMember("b", object); }, kNoModify, "1"},
        {"{}", [&](Edit& n) { return n.ModifyMember("b", object); }, kNoName, "{}"},
        {"{}", [&](Edit& n) { return n.ModifyMember("a", object); }, "", "{'a':{'a':2}}"},
        {"{}", [&](Edit& n) { return n.Append(one); }, kNoAppend, "{}"},
        {"[1]", [](Edit& n) { return n.Append(n); }, kNoAppend, "[1]"},
        {"[1]", [](Edit& n) { return n.Append(OptionsNode(&n.Value())); }, "", "[1,[1]]"},
        {"[null]", [&](Edit& n) { return n.SetElement(0, one); }, kNoIndex, "[null]"},
        {"['x']", [&](Edit& n) { return n.SetElement(1, one); }, kNoIndex, "['x']"},
        {"['x']", [&](Edit& n) { return n.SetElement(0, one); }, "", "[1]"},
        {"[1,2]", [](Edit& n) { return n.Truncate(2); }, kSmall, "[1,2]"},
        {"{}", [](Edit& n) { return n.RemoveMember("a"); }, kMissing, "{}"},
        {"{'a':1}", [](Edit& n) { return n.RemoveMember("a"); }, "", "{}"},
        {"{}", [](Edit& n) { return n.RenameMember("b", "a", false); }, kMissing, "{}"},
        {"{'b':1}", [](Edit& n) { return n.RenameMember("b", "a", true); }, "", "{'b':null}"},
        {"{'a':1,'b':''}", [](Edit& n) { return n.RenameMember("b", "a", false); }, "", "{'b':1}"},
        {"{'a':1}", [](Edit& n) { return n.RenameMember("a", "a", false); }, "", "{'a':1}"},
        {"1", [](Edit& n) { return n.Overlay(OptionsNode(), 1); }, kNoMerge, "1"},
        {"1", [&](Edit& n) { return n.Merge(OptionsNode(), null); }, kNoMerge, "1"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases << ", " << c.before);
        Json::Value document = J(c.before);
        bool modified = false;
        Edit node(&document, &modified), none(nullptr, nullptr);
        const bool done = *c.error == '\0';
        EXPECT_EQ(c.edit(node), done);
        EXPECT_EQ(modified, done);
        EXPECT_EQ(node.Error().Get(), done ? "" : std::string(kInvalid) + c.error);
        EXPECT_EQ(Text(document), c.after);
        EXPECT_FALSE(c.edit(none) || none.Error().IsAbsent());
    }
}

TEST(OptionsNodeEditTest, CommentsTruncationAndRemovedNullsAreNoChanges) {
    Json::Value doc = J("{'l':[1,2,3],'n':null}"), gaps;
    bool modified = false;
    Edit node(&doc, &modified);
    EXPECT_TRUE(node.SetComment("why") && Edit(&doc["l"], &modified).Truncate(1));
    EXPECT_FALSE(node.RemoveMember("n"));
    EXPECT_TRUE(node.Error().IsAbsent() && !modified);
    EXPECT_EQ(Text(doc), "{'l':[1]}");
    EXPECT_FALSE(node.SetComment(nullptr));
    EXPECT_STREQ(node.Error().Get(), "Null OptionsNodeEdit or invalid comment");
    gaps[5U] = 1;
    EXPECT_TRUE(Edit(&gaps, nullptr).Truncate(3) && gaps.size() == 3);
    EXPECT_TRUE(Edit(&gaps, nullptr).Merge(OptionsNode(J("[1]")), OptionsNode(J("[0]"))));
    EXPECT_EQ(Text(gaps), "[1,null,null]");  // a missing element is a null one
}

TEST(OptionsNodeEditTest, CopyOfAPlainNodeHasADocumentOfItsOwn) {
    Edit node;
    EXPECT_TRUE(node.SetLeaf("a", std::string("/x"), nullptr));
    Edit copy(node);
    EXPECT_TRUE(copy.SetLeaf("b", -1.5, nullptr) && node.SetLeaf("b", 60U, nullptr));
    EXPECT_EQ(Text(node.Value()) + Text(copy.Value()), "{'a':'/x','b':60}{'a':'/x','b':-1.5}");
}

TEST(OptionsNodeEditTest, MembersMoveBetweenNodesButNotIntoThemselves) {
    Json::Value doc = J("{'a':{'b':{'c':1}},'n':null}");
    bool modified = false;
    Edit root(&doc, nullptr), inner(&doc["a"]["b"], &modified);
    EXPECT_FALSE(root.MoveMember(root, "x", "absent", true));
    EXPECT_EQ(root.Error().Get(), std::string(kInvalid) + kToSelf);
    EXPECT_FALSE(root.MoveMember(inner, "x", "absent", true));
    EXPECT_EQ(root.Error().Get(), std::string(kInvalid) + kMissing);
    EXPECT_FALSE(root.MoveMember(inner, "x", "a", true));  // into what is moved
    EXPECT_EQ(inner.Error().Get(), std::string(kInvalid) + kToSelf);
    EXPECT_FALSE(root.MoveMember(inner, "c", "a", false));  // first of all it must be addable
    EXPECT_EQ(inner.Error().Get(), std::string(kInvalid) + "object with the same name exists");
    EXPECT_FALSE(inner.MoveMember(root, "a", "c", true));  // over what holds it
    EXPECT_FALSE(inner.MoveMember(root, "n", "c", false) || modified);
    EXPECT_TRUE(inner.MoveMember(root, "n", "c", true) && modified);
    EXPECT_EQ(Text(doc), "{'a':{'b':{}},'n':1}");
}

TEST(OptionsNodeEditTest, SameLineCommentStaysUnlessTheSourceBringsOne) {
    Json::Value doc;
    Edit node(&doc, nullptr);
    EXPECT_TRUE(node.SetLeaf("a", 1, "first") && node.SetLeaf("b", "x", "\n\n"));
    EXPECT_TRUE(node.AddMember("a", OptionsNode(J("3")), true));
    EXPECT_EQ(doc["a"].getComment(Json::commentAfterOnSameLine), "//first");
    EXPECT_TRUE(node.RenameMember("a", "b", false));
    EXPECT_EQ(doc["a"].getComment(Json::commentAfterOnSameLine), "//\n");
}

TEST(OptionsNodeEditTest, CommentOfANullValueStaysWhenItGetsMembersOrElements) {
    const OptionsNode one(J("1")), object(J("{'a':1}")), list(J("[1]")), null;
    const std::function<void(Edit&)> edits[] = {
        [](Edit& n) { (void)n.SetLeaf("a", 1, nullptr); },
        [&](Edit& n) { (void)n.AddMember("a", one, false); },
        [&](Edit& n) { (void)n.ModifyMember("a", object); },
        [](Edit& n) { (void)n.RenameMember("b", "a", true); },
        [](Edit& n) {
            Edit other;
            (void)other.SetLeaf("a", 1, nullptr);
            (void)other.MoveMember(n, "a", "a", false);
        },
        [&](Edit& n) { (void)n.Append(one); },
        [&](Edit& n) { (void)n.Overlay(object, 1); },
        [&](Edit& n) { (void)n.Merge(object, null); },
        [&](Edit& n) { (void)n.Merge(list, null); },
    };
    for (const auto& edit : edits) {
        Json::Value document;
        Edit node(&document, nullptr);
        EXPECT_TRUE(node.SetComment("why"));
        edit(node);
        EXPECT_FALSE(document.empty()) << &edit - edits;
        EXPECT_EQ(document.getComment(Json::commentAfterOnSameLine), "//why") << &edit - edits;
    }
}

TEST(OptionsNodeEditTest, SourcesMayBePartsOfWhatChanges) {
    Json::Value doc = J("{'a':{'a':{'x':1}}}");
    Edit root(&doc, nullptr), inner(&doc["a"], nullptr);
    (void)root.Overlay(OptionsNode(&doc["a"]), 0);
    EXPECT_EQ(Text(doc), "{'a':{'x':1}}");
    const char* nameEnd = nullptr;
    const char* const name = doc.begin().memberName(&nameEnd);  // the document's own text
    EXPECT_TRUE(root.RenameMember(name, name, false));
    EXPECT_TRUE(inner.AddMember("w", root, false) && inner.Merge(root, root));
    EXPECT_EQ(Text(doc), "{'a':{'a':{'w':{'a':{'x':1}},'x':1},'w':{'a':{'x':1}},'x':1}}");
    doc =
        J("{'a':{'b':[{'i':0}]}}");  // the IDs of b, which the merge replaces before it needs them
    EXPECT_TRUE(root.Merge(OptionsNode(J("{'a':{'b':[]},'b':[1]}")), OptionsNode(&doc["a"])));
}

}  // namespace
