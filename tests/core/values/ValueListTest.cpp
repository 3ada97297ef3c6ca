#include "core/values/ValueList.h"

#include <gtest/gtest.h>

#include "core/options/OptionsNodeEdit.h"
#include "core/output/StringWritable.h"

using namespace Quenda;

namespace {

struct ValueListTest : testing::Test {
    std::string Console(const std::vector<const char*>& words) {
        StringWritable out;
        list_.Command(&out, static_cast<int>(words.size()), words.data());
        return out.Text();
    }

    ValueList list_{{ValueDefinition::Text("file", "/x"), ValueDefinition::Int("limit", -10),
                     ValueDefinition::UInt("mask", 7), ValueDefinition::Double("ratio", 0.5)}};
};

TEST_F(ValueListTest, TextsAreParsedByKindWithTheRangesOfA32BitLong) {
    const std::tuple<const char*, int32_t, uint32_t, double> cases[] = {
        {" \t-0X1F", -31, 4294967265U, -31.0},
        {"017", 15, 15, 17.0},
        {"0b1", 0, 0, 0.0},
        {"-2147483649", INT32_MIN, INT32_MAX, -2147483649.0},
        {"4294967296", INT32_MAX, UINT32_MAX, 4294967296.0},
        {"-4294967296", INT32_MIN, UINT32_MAX, -4294967296.0},
        {nullptr, 0, 0, 0.0},
    };
    for (const auto& [text, asInt, asUInt, asDouble] : cases) {
        for (const char* name : {"file", "limit", "mask", "ratio"}) {
            list_.Find(name)->SetFromText(text);
        }
        EXPECT_EQ(list_.Find("file")->AsInt(), asInt) << text;
        EXPECT_EQ(list_.Find("limit")->AsInt(), asInt) << text;
        EXPECT_EQ(list_.Find("mask")->AsUInt(), asUInt) << text;
        EXPECT_EQ(list_.Find("mask")->AsInt(), static_cast<int32_t>(asUInt)) << text;
        EXPECT_EQ(list_.Find("ratio")->AsDouble(), asDouble) << text;
    }
}

TEST_F(ValueListTest, LoadTakesPresentTextsAndDefaultsForTheRest) {
    OptionsNodeEdit options;
    EXPECT_TRUE(options.SetLeaf("file", "/y", nullptr));
    EXPECT_TRUE(options.SetLeaf("mask", "", nullptr));
    EXPECT_TRUE(options.SetLeaf("limit", 5000000U, nullptr));
    list_.Find("mask")->SetFromText("1");
    EXPECT_TRUE(list_.Load(options));
    EXPECT_FALSE(list_.Load(OptionsNode(Json::Value(1))));
    EXPECT_EQ(Console({}), "file = \"/y\"\nlimit = 5000000\nmask = 7\nratio = 0.500000\n");
}

}  // namespace
