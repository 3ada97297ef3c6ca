// Freed memory keeps no text of an option's value or name. Every block freed by this program is
// searched for a marker before it goes back to the heap.
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstring>

#include "core/options/OptionsNodeEdit.h"

using namespace Quenda;

namespace {

// Too long for the buffer inside a std::string. The names begin with the text.
constexpr char kText[] = "secret-of-the-terminal";
constexpr char kName[] = "secret-of-the-terminal-name";
constexpr char kOtherName[] = "secret-of-the-terminal-other-name";

bool searching = false;
int found = 0;

}  // namespace

extern "C" void __libc_free(void* block);
extern "C" void free(void* block) {
    if (searching && block != nullptr &&
        memmem(block, malloc_usable_size(block), kText, sizeof(kText) - 1) != nullptr) {
        ++found;
    }
    __libc_free(block);
}

namespace {

void EditAndMerge() {
    Json::Value listed;
    listed["l"][0U][kName] = kText;
    OptionsNodeEdit node;
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(node.SetLeaf(kName, kText, nullptr));
        EXPECT_TRUE(node.SetLeaf(kOtherName, round, nullptr));
    }
    const OptionsNode copy = node;
    (void)copy.GetNode({kOtherName, kName});
    EXPECT_TRUE(node.AddMember(kOtherName, copy, true));
    EXPECT_TRUE(node.RenameMember(kName, kOtherName, false));
    (void)node.Overlay(OptionsNode(listed), 9);
    EXPECT_TRUE(node.Merge(OptionsNode(&listed), OptionsNode(listed)));
    EXPECT_TRUE(node.RemoveMember(kName));
}

TEST(WipingTest, LookupsCopiesEditsAndMergesLeaveNoTextBehind) {
    searching = true;
    EditAndMerge();
    EXPECT_EQ(found, 0);
    delete new std::string(kText);
    searching = false;
    EXPECT_EQ(found, 1) << "a text in a freed block was not found";
}

}  // namespace
