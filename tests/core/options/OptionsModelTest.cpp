// Overlays and merges of generated trees, against models that rebuild the whole tree.
#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "core/options/OptionsNodeEdit.h"
#include "tests/core/options/Json.h"

namespace Quenda {
namespace {

// Few names and values, so that trees meet; element objects mostly carry an "id".
class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    Json::Value Tree(unsigned depth) {
        switch (Pick(depth == 0 ? 4 : 8)) {
            case 0:
                return Json::Value();
            case 1:
                return static_cast<int>(Pick(3));
            case 2:
                return Pick(2) == 0 ? Json::Value("x") : Json::Value(true);
            case 3:
                return 0.5;
            case 4:
                return List(depth);
            default:
                return Object(depth);
        }
    }

private:
    unsigned Pick(unsigned count) { return static_cast<unsigned>(random_()) % count; }

    Json::Value Object(unsigned depth) {
        const char* names[] = {"a", "b", "l", "id"};
        Json::Value object(Json::objectValue);
        for (unsigned i = Pick(4); i > 0; --i) {
            object[names[Pick(3)]] = Tree(depth - 1);
        }
        if (Pick(4) != 0) {
            object["id"] = static_cast<int>(Pick(3));
        }
        return object;
    }

    Json::Value List(unsigned depth) {
        Json::Value list(Json::arrayValue);
        for (unsigned i = Pick(4); i > 0; --i) {
            list.append(Pick(6) == 0 ? Tree(depth - 1) : Object(depth));
        }
        return list;
    }

    std::mt19937 random_;
};

// IDs for every list of the tree: the "id" of its elements. Sometimes none.
Json::Value IdsFor(const Json::Value& tree, std::mt19937& random) {
    Json::Value ids;
    if (tree.isArray() && random() % 4 != 0) {
        ids.append(Obj({{"id", 0}}));
    } else if (tree.isObject()) {
        for (const std::string& name : tree.getMemberNames()) {
            ids[name] = IdsFor(tree[name], random);
        }
    }
    return ids;
}

Json::Value OverlayModel(const Json::Value& old, const Json::Value& over, unsigned levels) {
    if (over.isNull() || !over.isObject() || !(old.isNull() || old.isObject())) {
        return over.isNull() ? old : over;
    }
    Json::Value result(old);
    for (const std::string& name : over.getMemberNames()) {
        if (!over[name].isNull()) {
            const Json::Value member = old.get(name, Json::Value());
            result[name] = levels == 0 ? over[name] : OverlayModel(member, over[name], levels - 1);
        }
    }
    return result;
}

bool SameClass(const Json::Value& a, const Json::Value& b) {
    return a.isNull() || b.isNull() || a.type() == b.type() || (a.isNumeric() && b.isNumeric());
}

// Nothing when the merge must fail. IDs are {"id": 0} everywhere.
std::optional<Json::Value> MergeModel(const Json::Value& old, const Json::Value& change,
                                      const Json::Value& ids) {
    const bool container = change.isObject() || change.isArray();
    if (change.isNull()) {
        return old;
    }
    if (container ? !(old.isNull() || old.type() == change.type()) : !SameClass(old, change)) {
        return std::nullopt;
    }
    if (!container || old.isNull() || (change.isArray() && ids.isNull())) {
        return change;
    }
    Json::Value result(old);
    if (change.isObject()) {
        for (const std::string& name : change.getMemberNames()) {
            const auto member =
                MergeModel(old.get(name, Json::Value()), change[name],
                           ids.isObject() ? ids.get(name, Json::Value()) : Json::Value());
            if (!member) {
                return std::nullopt;
            }
            result[name] = *member;
        }
        return result;
    }
    for (const Json::Value& element : change) {
        bool matched = element.isNull();
        for (Json::Value& candidate : result) {
            if (matched) {
                break;
            }
            const bool objects = element.isObject() && (candidate.isObject() || candidate.isNull());
            if (!objects || candidate.isNull() || !element["id"].isInt() ||
                !candidate["id"].isInt()) {
                return std::nullopt;
            }
            if (element["id"] == candidate["id"]) {
                const auto merged = MergeModel(candidate, element, ids[0U]);
                if (!merged) {
                    return std::nullopt;
                }
                candidate = *merged;
                matched = true;
            }
        }
        if (!matched) {
            result.append(element);
        }
    }
    return result;
}

TEST(OptionsModelTest, GeneratedTreesComeOutAsTheModelsSay) {
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    unsigned merged = 0;
    for (unsigned i = 0; i < 3000; ++i) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << ", tree " << i);
        Generator generator(static_cast<unsigned>(random()));
        const Json::Value before = generator.Tree(4);
        const Json::Value change = generator.Tree(4);
        const Json::Value ids = IdsFor(change, random);
        const unsigned levels = static_cast<unsigned>(random()) % 4;

        Json::Value overlaid(before);
        EXPECT_FALSE(OptionsNodeEdit(&overlaid, nullptr).Overlay(OptionsNode(&change), levels));
        ASSERT_EQ(Text(overlaid), Text(OverlayModel(before, change, levels)))
            << Text(before) << " with " << Text(change) << " over it, " << levels << " levels";

        Json::Value document(before);
        const bool done =
            OptionsNodeEdit(&document, nullptr).Merge(OptionsNode(&change), OptionsNode(&ids));
        const auto expected = MergeModel(before, change, ids);
        ASSERT_EQ(done, expected.has_value()) << Text(before) << " with " << Text(change);
        if (done) {
            ASSERT_EQ(Text(document), Text(*expected)) << Text(before) << " with " << Text(change);
            ++merged;
        }
    }
    EXPECT_GT(merged, 300U) << "too few merges succeed to tell anything";
}

}  // namespace
}  // namespace Quenda
