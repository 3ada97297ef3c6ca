#include "core/options/OptionsNodeEdit.h"

#include <memory>

#include "tests/core/options/Json.h"

using namespace Quenda;

namespace {

using Edit = OptionsNodeEdit;

TEST(OptionsNodeEditTest, CopyOfAPlainNodeHasADocumentOfItsOwn) {
    const Json::Value seen = J("[2]");
    auto node = std::make_unique<Edit>();
    EXPECT_TRUE(node->SetLeaf("a", -1.5, nullptr));
    Edit copy(*node);
    static_cast<OptionsNode&>(*node) = OptionsNode(&seen);  // views one value, edits another
    Edit copyOfView(*node);
    EXPECT_TRUE(node->SetLeaf("a", 0, nullptr));
    node.reset();
    EXPECT_EQ(Text(copyOfView.Value()), "[2]");
    EXPECT_TRUE(copyOfView.MoveMember(copy, "x", "a", false));
    EXPECT_EQ(Text(copy.Value()), "{'a':-1.5,'x':-1.5}");
}

TEST(OptionsNodeEditTest, MembersMoveBetweenNodesButNotIntoThemselves) {
    Json::Value document = J("{'a':{'b':{'c':1}},'n':null}");
    bool modified = false;
    Edit root(&document, nullptr);
    Edit inner(&document["a"]["b"], &modified);
    EXPECT_FALSE(root.MoveMember(root, "x", "absent", true));
    // Copies share the message.
    EXPECT_STREQ(Edit(root).Error().Get(), "Invalid operation: move object from self to self");
    EXPECT_FALSE(root.MoveMember(inner, "x", "a", true));  // into the moved member
    EXPECT_STREQ(inner.Error().Get(), root.Error().Get());
    EXPECT_FALSE(inner.MoveMember(root, "a", "c", true));  // over the value that contains it
    EXPECT_TRUE(Edit(inner).MoveMember(root, "n", "c", true));
    EXPECT_TRUE(modified);
    EXPECT_EQ(Text(document), "{'a':{'b':{}},'n':1}");
}

}  // namespace
