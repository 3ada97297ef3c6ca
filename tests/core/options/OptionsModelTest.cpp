// Overlays and merges of generated trees, against models that rebuild the whole tree.
#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "core/options/OptionsNodeEdit.h"
#include "tests/core/options/Json.h"

namespace Quenda {
namespace {

using Json::Value;

// Few names and values, so that trees meet; lists hold objects with an "id".
Value Tree(std::mt19937& random, unsigned depth) {
    const char* const leaves[] = {"null", "1", "'x'", "0.5"};
    const auto kind = random() % (depth == 0 ? 1 : 4);
    Value value(kind == 0 ? J(leaves[random() % 4]) : Value());
    for (auto i = random() % 4; kind == 1 && i > 0; --i) {
        Value element = Tree(random, depth - 1);
        if (element.isObject() || random() % 8 == 0) {
            value.append(element);
        }
    }
    for (auto i = random() % 4; kind > 1 && i > 0; --i) {
        value[i == 1 ? "a" : "l"] = Tree(random, depth - 1);
        value["id"] = static_cast<int>(random() % 3);
    }
    return value;
}

Value OverlayModel(const Value& old, const Value& over, unsigned levels) {
    if (over.isNull() || !over.isObject() || !(old.isNull() || old.isObject())) {
        return over.isNull() ? old : over;
    }
    Value result(old);
    for (const std::string& name : over.getMemberNames()) {
        if (!over[name].isNull()) {
            const Value member = old.get(name, Value());
            result[name] = levels == 0 ? over[name] : OverlayModel(member, over[name], levels - 1);
        }
    }
    return result;
}

// Nothing when the merge must fail. With IDs, every list has [{'id':0}].
std::optional<Value> MergeModel(const Value& old, const Value& change, bool ids) {
    const bool numbers = old.isNumeric() && change.isNumeric();
    if (change.isNull()) {
        return old;
    }
    if (!old.isNull() && old.type() != change.type() && !numbers) {
        return std::nullopt;
    }
    if (old.isNull() || !(change.isObject() || (change.isArray() && ids))) {
        return change;
    }
    Value result(old);
    for (auto member = change.begin(); change.isObject() && member != change.end(); ++member) {
        const auto merged = MergeModel(old.get(member.name(), Value()), *member, ids);
        if (!merged) {
            return std::nullopt;
        }
        result[member.name()] = *merged;
    }
    for (unsigned i = 0; change.isArray() && i < change.size(); ++i) {
        bool matched = change[i].isNull();
        for (unsigned j = 0; !matched && j < result.size(); ++j) {
            // An object without members was null when it was generated and has no ID.
            if (!change[i].isObject() || !result[j].isObject()) {
                return std::nullopt;
            }
            if (change[i]["id"] == result[j]["id"]) {
                const auto merged = MergeModel(result[j], change[i], false);
                if (!merged) {
                    return std::nullopt;
                }
                result[j] = *merged;
                matched = true;
            }
        }
        if (!matched) {
            result.append(change[i]);
        }
    }
    return result;
}

// The IDs of every list outside of lists; within, lists are replaced.
Value IdsFor(const Value& tree) {
    Value ids = tree.isArray() ? J("[{'id':0}]") : Value();
    for (auto member = tree.begin(); tree.isObject() && member != tree.end(); ++member) {
        ids[member.name()] = IdsFor(*member);
    }
    return ids;
}

TEST(OptionsModelTest, GeneratedTreesComeOutAsTheModelsSay) {
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    unsigned mergedCount = 0;
    for (unsigned i = 0; i < 3000; ++i) {
        const Value before = Tree(random, 4);
        const Value change = Tree(random, 4);
        const auto levels = static_cast<unsigned>(random() % 4);
        const bool withIds = random() % 4 != 0;
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", tree " << i << ": " << Text(before)
                                        << " and " << Text(change));
        Value document(before);
        EXPECT_FALSE(OptionsNodeEdit(&document, nullptr).Overlay(OptionsNode(&change), levels));
        ASSERT_EQ(Text(document), Text(OverlayModel(before, change, levels))) << levels;

        document = before;
        const OptionsNode ids(withIds ? IdsFor(change) : Value());
        const auto expected = MergeModel(before, change, withIds);
        const bool merged = OptionsNodeEdit(&document, nullptr).Merge(OptionsNode(&change), ids);
        ASSERT_EQ(merged, expected.has_value()) << withIds;
        ASSERT_EQ(merged ? Text(document) : "", expected ? Text(*expected) : "") << withIds;
        mergedCount += merged ? 1 : 0;
    }
    EXPECT_GT(mergedCount, 300U) << "too few merges succeed to tell anything";
}

}  // namespace
}  // namespace Quenda
