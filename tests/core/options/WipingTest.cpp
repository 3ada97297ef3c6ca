// Freed memory keeps no text of an option's value or name. Every block freed by this program is
// searched for a marker before it goes back to the heap.
#include <gtest/gtest.h>
#include <malloc.h>

#include <cstring>

#include "core/options/OptionsNodeEdit.h"
#include "tests/core/options/Json.h"

namespace {

// Longer than what a std::string keeps within itself.
#define MARKER "secret-of-the-terminal-"
constexpr char kValue[] = MARKER "value";
constexpr char kName[] = MARKER "name";
constexpr char kOtherName[] = MARKER "other-name";

bool searching = false;
int found = 0;

void Search(const void* block, size_t size) {
    if (searching && block != nullptr &&
        memmem(block, size, MARKER, sizeof(MARKER) - 1) != nullptr) {
        ++found;
    }
}

}  // namespace

extern "C" void __libc_free(void* block);
extern "C" void free(void* block) {
    if (block != nullptr) {
        Search(block, malloc_usable_size(block));
    }
    __libc_free(block);
}

namespace Quenda {
namespace {

// The number of freed blocks that held the marker while `run` ran.
template <typename Run>
int MarkedBlocks(const Run& run) {
    found = 0;
    searching = true;
    run();
    searching = false;
    return found;
}

TEST(WipingTest, SearchFindsAMarkerInAFreedBlock) {
    EXPECT_EQ(MarkedBlocks([] { delete new std::string(kValue); }), 1);
}

void EditEverything() {
    Json::Value doc;
    doc["o"][kName] = kValue;
    Json::Value listed;
    listed["l"][0U][kName] = kValue;
    Json::Value listIds;
    listIds["l"][0U][kName] = "";
    OptionsNodeEdit root(&doc, nullptr);
    OptionsNodeEdit node;
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(node.SetLeaf(kName, kValue, nullptr));
        EXPECT_TRUE(node.SetLeaf(kOtherName, round, nullptr));
    }
    OptionsNode copy(doc);
    copy = node;
    (void)copy.GetNode({kOtherName, kName});
    int32_t number = 0;
    EXPECT_FALSE(copy.GetMemberValue(number, kName, 0));
    EXPECT_FALSE(node.AddMember(kName, copy, false));
    EXPECT_FALSE(node.SetLeaf(kName, static_cast<char*>(nullptr), nullptr));
    EXPECT_TRUE(root.AddMember(kOtherName, node, true));
    EXPECT_TRUE(node.RenameMember(kName, kOtherName, false));
    EXPECT_TRUE(node.MoveMember(root, kName, kName, true));
    (void)root.Overlay(OptionsNode(listed), 9);
    EXPECT_FALSE(root.Merge(OptionsNode(J("{'o':1}")), copy));
    listed["l"][1U][kName] = kName;
    EXPECT_TRUE(root.Merge(OptionsNode(&listed), OptionsNode(listIds)));
    OptionsNodeEdit list(&doc["l"], nullptr);
    EXPECT_TRUE(list.Append(OptionsNode(Json::Value(kValue))));
    EXPECT_TRUE(list.SetElement(2, OptionsNode(Json::Value(kName))));
    EXPECT_TRUE(list.Truncate(1));
    EXPECT_TRUE(root.RemoveMember(kOtherName));
}

TEST(WipingTest, LookupsCopiesEditsAndMergesLeaveNoTextBehind) {
    EXPECT_EQ(MarkedBlocks(EditEverything), 0);
}

}  // namespace
}  // namespace Quenda
