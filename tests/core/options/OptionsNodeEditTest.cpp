#include "core/options/OptionsNodeEdit.h"

#include <functional>
#include <memory>

#include "tests/core/options/Json.h"
#include "tests/support/CallbackTo.h"

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
constexpr char kNoName[] = "object of the name does not exist";
constexpr char kNoAppend[] = "cannot append to non-array OptionsNodeEdit or append itself";
constexpr char kNoIndex[] = "array index does not exist";
constexpr char kMissing[] = "object does not exist";
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
        {"[]", [&](Edit& n) { return n.AddMember("a", one, true); }, kNoAdd, "[]"},
        {"{'a':1}", [&](Edit& n) { return n.AddMember("a", null, false); }, kAddEmpty, "{'a':1}"},
        {"{}", [](Edit& n) { return n.AddMember("a", n, true); }, kAddEmpty, "{}"},
        {"{'a':[]}", [&](Edit& n) { return n.AddMember("a", one, false); }, kExists, "{'a':[]}"},
        {"{}", [&](Edit& n) { return n.AddMember("a", deep, true); }, kTooDeep, "{}"},
        {"{}", [&](Edit& n) { return n.ModifyMember("b", object); }, kNoName, "{}"},
        {"{}", [&](Edit& n) { return n.ModifyMember("a", object); }, "", "{'a':{'a':2}}"},
        {"{}", [&](Edit& n) { return n.Append(one); }, kNoAppend, "{}"},
        {"[1]", [](Edit& n) { return n.Append(n); }, kNoAppend, "[1]"},
        {"['x']", [&](Edit& n) { return n.Append(object); }, "", "['x',{'a':2}]"},
        {"['x']", [&](Edit& n) { return n.SetElement(1, one); }, kNoIndex, "['x']"},
        {"{}", [](Edit& n) { return n.RemoveMember("a"); }, kMissing, "{}"},
        {"{}", [](Edit& n) { return n.RenameMember("b", "a", false); }, kMissing, "{}"},
        {"{'a':1,'b':''}", [](Edit& n) { return n.RenameMember("b", "a", false); }, "", "{'b':1}"},
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
        EXPECT_FALSE(c.edit(none));
        EXPECT_FALSE(none.Error().IsAbsent());
    }
}

TEST(OptionsNodeEditTest, CopyOfAPlainNodeHasADocumentOfItsOwn) {
    const Json::Value seen = J("{'b':[2]}");
    auto node = std::make_unique<Edit>();
    EXPECT_TRUE(node->SetLeaf("a", -1.5, nullptr));
    Edit copy(*node);
    static_cast<OptionsNode&>(*node) = OptionsNode(&seen);  // views one value, edits another
    Edit copyOfView(*node);
    EXPECT_TRUE(node->SetLeaf("a", 0, nullptr));
    node.reset();
    EXPECT_EQ(Text(copyOfView.Value()), "{'b':[2]}");
    for (Edit* edit : {&copy, &copyOfView}) {
        Edit taken;
        EXPECT_TRUE(edit->MoveMember(taken, "x", "a", false));
        EXPECT_EQ(Text(taken.Value()), "{'x':-1.5}");
    }
}

TEST(OptionsNodeEditTest, MembersMoveBetweenNodesButNotIntoThemselves) {
    Json::Value document = J("{'a':{'b':{'c':1}},'n':null}");
    bool modified = false;
    Edit root(&document, nullptr);
    Edit inner(&document["a"]["b"], &modified);
    EXPECT_FALSE(root.MoveMember(root, "x", "absent", true));
    EXPECT_EQ(root.Error().Get(), std::string(kInvalid) + kToSelf);
    EXPECT_FALSE(root.MoveMember(inner, "x", "a", true));  // into what is moved
    EXPECT_EQ(inner.Error().Get(), std::string(kInvalid) + kToSelf);
    EXPECT_FALSE(inner.MoveMember(root, "a", "c", true));  // over what holds it
    EXPECT_TRUE(inner.MoveMember(root, "n", "c", true));
    EXPECT_TRUE(modified);
    EXPECT_EQ(Text(document), "{'a':{'b':{}},'n':1}");
}

// Overlays and merges are the model's (OptionsModelTest).
TEST(OptionsNodeEditTest, CommentOfANullValueStaysWhenItGetsMembersOrElements) {
    const OptionsNode one(J("1"));
    const std::function<bool(Edit&)> edits[] = {
        [](Edit& n) { return n.SetLeaf("a", 1, nullptr); },
        [&](Edit& n) { return n.AddMember("a", one, false); },
        [](Edit& n) { return n.RenameMember("b", "a", true); },
        [&](Edit& n) { return n.Append(one); },
    };
    for (const auto& edit : edits) {
        Json::Value document;
        Edit node(&document, nullptr);
        EXPECT_TRUE(node.SetComment("why"));
        EXPECT_TRUE(edit(node));
        EXPECT_EQ(document.getComment(Json::commentAfterOnSameLine), "//why") << &edit - edits;
    }
}

TEST(OptionsNodeEditTest, NodeThatViewsASelectionEditsItsDocumentAlone) {
    Json::Value list = J("[1,2]");
    bool modified = false;
    Edit node(&list, &modified);
    const MemberPredicate all(new CallbackTo<bool(const char*)>([](const char*) { return true; }));
    ASSERT_TRUE(OptionsNode(J("{'a':1}")).SelectMembers(all, node));
    Edit copy(node);
    for (Edit* edit : {&node, &copy}) {
        modified = false;
        EXPECT_FALSE(edit->RemoveMember("a"));
        EXPECT_FALSE(edit->SetLeaf("b", 1, nullptr));
        EXPECT_TRUE(edit->Append(OptionsNode(J("3"))));
        EXPECT_TRUE(modified);
        EXPECT_EQ(Text(edit->Value()), "{'a':1}");
    }
    EXPECT_EQ(Text(list), "[1,2,3,3]");
}

}  // namespace
