#include <gtest/gtest.h>

#include "core/options/OptionsNodeEdit.h"
#include "tests/core/options/Json.h"

namespace Quenda {
namespace {

constexpr char kTypeChange[] = "Invalid operation: cannot change type of existing OptionsNodeEdit";
Json::Value Id(const Json::Value& id) {
    return Obj({{"id", id}});
}

Json::Value IdV(int id, const Json::Value& v) {
    return Obj({{"id", id}, {"v", v}});
}

// Wrapped into {"list": value}, so that messages carry a path.
Json::Value List(const Json::Value& value) {
    return Obj({{"list", value}});
}

TEST(OptionsMergeTest, ChangesAreMergedOrTheFirstObstacleNamed) {
    const Json::Value null;
    const struct {
        Json::Value destination, source, ids;
        const char* error;
        const char* after;
    } cases[] = {
        // Objects and leaves.
        {null, Obj({{"a", null}}), null, "", R"({"a":null})"},
        {Obj({{"a", 5}}), null, null, "", R"({"a":5})"},
        {Obj({{"a", 5}}), Obj({{"b", null}}), null, "", R"({"a":5,"b":null})"},
        {Obj({{"a", 5}}), Obj({{"a", Obj({{"b", 1}})}}), null,
         "/a: Cannot merge object to non-object", R"({"a":5})"},
        {Obj({{"b", 5}}), Obj({{"a", 1}, {"b", "x"}}), null, kTypeChange, R"({"a":1,"b":5})"},
        {Obj({{"a", 5}}), Obj({{"a", true}}), null, kTypeChange, R"({"a":5})"},
        {Obj({{"a", 5}}), Obj({{"a", 2.5}}), null, "", R"({"a":2.5})"},
        {Obj({{"a", 5}}), Obj({{"a", 6}}), Arr({}),
         ": Array IDs type does not match destination type", R"({"a":5})"},
        // Arrays as a whole.
        {List(Arr({1, 2})), List(Arr({"x"})), null, "", R"({"list":["x"]})"},
        {List(1), List(Arr({})), null, "/list: Cannot merge array to non-array", R"({"list":1})"},
        {List(Arr({})), List(1), null, kTypeChange, R"({"list":[]})"},
        {List(null), List(Arr({1})), List(Obj({})), "/list: Cannot merge array to non-array",
         R"({"list":null})"},
        {List(Arr({})), List(Arr({1})), List(1),
         "/list: Array IDs type does not match destination type", R"({"list":[]})"},
        {List(Arr({})), List(Arr({})), List(Arr({})), "/list: Multiple elements in array IDs",
         R"({"list":[]})"},
        {List(null), List(Arr({})), List(Arr({1, 1})), "/list: Multiple elements in array IDs",
         R"({"list":null})"},
        {List(null), List(Arr({1, null})), List(Arr({1})), "", R"({"list":[1,null]})"},
        // Elements by their IDs.
        {List(Arr({Id(1), IdV(2, 0)})), List(Arr({null, IdV(2, 9), Id(3)})), List(Arr({Id(0)})), "",
         R"({"list":[{"id":1},{"id":2,"v":9},{"id":3}]})"},
        {List(Arr({IdV(1, 1), IdV(1, 2)})), List(Arr({IdV(1, 9)})), List(Arr({Id(0)})), "",
         R"({"list":[{"id":1,"v":9},{"id":1,"v":2}]})"},
        {List(Arr({})), List(Arr({IdV(1, 1), IdV(1, 2)})), List(Arr({Id(0)})), "",
         R"({"list":[{"id":1,"v":2}]})"},
        {List(Arr({Id(1)})), List(Arr({null, Obj({{"v", 1}})})), List(Arr({Id(0)})),
         "/list[1]: Missing array ID in source options", R"({"list":[{"id":1}]})"},
        {List(Arr({Obj({})})), List(Arr({Id(1)})), List(Arr({Id(0)})),
         "/list[0]: Missing array ID in destination options", R"({"list":[{}]})"},
        {List(Arr({Id(1)})), List(Arr({Id(1)})), List(Arr({Id(true)})),
         "/list[0]: Array elements not comparable", R"({"list":[{"id":1}]})"},
        {List(Arr({1})), List(Arr({"x"})), List(Arr({1})),
         "/list[0]: Array elements not comparable", R"({"list":[1]})"},
        {List(Arr({null})), List(Arr({"x"})), List(Arr({Id(0)})),
         "/list[0]: Missing array ID in source options", R"({"list":[null]})"},
        {List(Arr({1, null})), List(Arr({2, 1U, 1})), List(Arr({0})), "",
         R"({"list":[1,2,1]})"},  // a null element matches what no member identifies
        {List(Arr({1})), List(Arr({2, 1U, 1})), List(Arr({0})), "", R"({"list":[1,2,1]})"},
        {List(Arr({Id(1)})), List(Arr({Id(2)})), List(Arr({Id(null)})), "",
         R"({"list":[{"id":2}]})"},
        {List(Arr({IdV(1, 1)})), List(Arr({IdV(1, Obj({}))})), List(Arr({Id(0)})),
         "/list//v: Cannot merge object to non-object", R"({"list":[{"id":1,"v":1}]})"},
        {List(Arr({IdV(1, Arr({Id(7)}))})), List(Arr({IdV(1, Arr({Id(8)}))})),
         List(Arr({Obj({{"id", 0}, {"v", Arr({Id(0)})}})})), "",
         R"({"list":[{"id":1,"v":[{"id":7}]},{"id":1,"v":[{"id":8}]}]})"},
    };
    for (const auto& c : cases) {
        Json::Value document(c.destination);
        bool modified = false;
        OptionsNodeEdit node(&document, &modified);
        (void)node.SetComment(nullptr);  // an earlier message
        const auto line = &c - cases;
        EXPECT_EQ(node.Merge(OptionsNode(&c.source), OptionsNode(&c.ids)), *c.error == '\0')
            << line;
        EXPECT_STREQ(node.Error().Get(), c.error) << line;
        EXPECT_EQ(Text(document), c.after) << line;
        EXPECT_TRUE(modified) << line;
    }
}

TEST(OptionsMergeTest, TreesNestedTooDeeplyAreRefusedUnchanged) {
    const Json::Value deep = Nested(10000);
    Json::Value document = Obj({{"a", 1}});
    bool modified = false;
    OptionsNodeEdit node(&document, &modified);
    EXPECT_FALSE(node.Merge(OptionsNode(&deep), OptionsNode()));
    EXPECT_STREQ(node.Error().Get(), "Invalid operation: OptionsNode is nested too deeply");
    EXPECT_FALSE(node.Overlay(OptionsNode(&deep), 4294967295U));
    EXPECT_FALSE(modified);
    document = Nested(10000);
    const Json::Value limit = Nested(1000);
    EXPECT_TRUE(node.Merge(OptionsNode(&limit), OptionsNode(&limit)));
    (void)node.Overlay(OptionsNode(&limit), 4294967295U);
    EXPECT_TRUE(modified);
}

}  // namespace
}  // namespace Quenda
