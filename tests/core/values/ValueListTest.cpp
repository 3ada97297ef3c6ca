#include "core/values/ValueList.h"

#include <gtest/gtest.h>

#include "core/options/OptionsNodeEdit.h"
#include "core/output/StringWritable.h"

using namespace Quenda;

namespace {

constexpr char kDefaults[] = "file = \"/x\"\nlimit = -10\nmask = 7\nratio = 0.500000\n";
constexpr char kUsage[] = "Usage: show [key] | reset [key] | set {key} {value}\n";

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
        {"1.75x", 1, 1, 1.75},
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
        const ValueEntry copy(list_.At(0));
        list_.Find("file")->SetFromText("other");
        EXPECT_STREQ(copy.AsText(), text);
        EXPECT_TRUE(copy.AsInt() == asInt && list_.At(1).AsInt() == asInt) << text;
        EXPECT_TRUE(copy.AsUInt() == asUInt && list_.At(2).AsUInt() == asUInt) << text;
        EXPECT_EQ(list_.At(3).AsDouble(), asDouble) << text;
    }
    for (const char* name : {"file", "limit", "mask", "ratio"}) {
        list_.Find(name)->SetFromNumber(-1.5);
    }
    EXPECT_EQ(Console({}), "file = \"-1.5\"\nlimit = -1\nmask = 4294967295\nratio = -1.500000\n");
}

TEST_F(ValueListTest, LoadTakesPresentTextsAndDefaultsForTheRest) {
    OptionsNodeEdit options;
    EXPECT_TRUE(options.SetLeaf("file", "/y", nullptr) && options.SetLeaf("mask", "", nullptr));
    EXPECT_TRUE(options.SetLeaf("limit", 5000000U, nullptr));
    list_.Find("mask")->SetFromText("1");
    EXPECT_TRUE(list_.Load(options));
    EXPECT_FALSE(list_.Load(OptionsNode(Json::Value(1))) || list_.Load(OptionsNode()));
    EXPECT_EQ(Console({}), "file = \"/y\"\nlimit = 5000000\nmask = 7\nratio = 0.500000\n");
    EXPECT_TRUE(list_.Load(OptionsNode(nullptr)));  // null: no option is present
    EXPECT_EQ(Console({"show"}), kDefaults);
}

TEST_F(ValueListTest, ConsoleShowsAndResetsInItsOwnSpelling) {
    EXPECT_EQ(Console({"show", "Mask"}), "Cannot find value \"Mask\"\n");
    EXPECT_EQ(Console({"SHOW"}), kUsage);
    EXPECT_EQ(Console({"set", "limit", "abc"}), "");
    EXPECT_EQ(Console({"reset", "mask"}), "");
    EXPECT_EQ(Console({"show", "limit"}), "limit = 0\n");
    EXPECT_EQ(Console({"reset"}), "");
    EXPECT_EQ(Console({}), kDefaults);
    StringWritable out;
    list_.Command(&out, -1, nullptr);
    ValueList({}).Command(&out, 0, nullptr);
    EXPECT_EQ(out.Text(), std::string(kUsage) + "No values\n");
}

TEST_F(ValueListTest, HistoryIsCreatedOnFirstUseAndLostWhenDisabled) {
    EXPECT_EQ(Console({"history", "snapshot"}), kUsage);
    list_.EnableHistory(true);
    EXPECT_EQ(Console({"HISTORY"}),
              "Usage: show [key] | reset [key] | set {key} {value} | history\n");
    EXPECT_EQ(Console({"history", "snapshot"}), "Created value history logger.\n");
    list_.EnableHistory(true);
    EXPECT_NE(Console({"history", "show"}), "");
    list_.EnableHistory(false);
    list_.EnableHistory(true);
    EXPECT_EQ(Console({"history", "show"}), "Created value history logger.\n");
}

}  // namespace
