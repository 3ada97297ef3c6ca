#include "core/values/ValueList.h"

#include <gtest/gtest.h>

#include "core/options/OptionsNodeEdit.h"
#include "core/output/StringWritable.h"

namespace Quenda {
namespace {

constexpr char kDefaults[] = "file = \"/x\"\nlimit = -10\nmask = 7\nratio = 0.500000\n";
constexpr char kUsage[] = "Usage: show [key] | reset [key] | set {key} {value}\n";

class ValueListTest : public testing::Test {
protected:
    std::string Console(const std::vector<const char*>& words) {
        StringWritable out;
        list_.Command(&out, static_cast<int>(words.size()), words.data());
        return out.Text();
    }

    ValueList list_{{ValueDefinition::Text("file", "/x"), ValueDefinition::Int("limit", -10),
                     ValueDefinition::UInt("mask", 7), ValueDefinition::Double("ratio", 0.5)}};
};

TEST_F(ValueListTest, TextsAreParsedByKindAndRejectNothing) {
    for (const auto& [text, numbers] :
         {std::pair<const char*, const char*>{"0x1F", "limit = 31\nmask = 31\nratio = 31.000000\n"},
          {"017", "limit = 15\nmask = 15\nratio = 17.000000\n"},
          {"-1", "limit = -1\nmask = 4294967295\nratio = -1.000000\n"},
          {"1.75x", "limit = 1\nmask = 1\nratio = 1.750000\n"},
          {"abc", "limit = 0\nmask = 0\nratio = 0.000000\n"}}) {
        for (const char* name : {"file", "limit", "mask", "ratio"}) {
            EXPECT_EQ(Console({"set", name, text}), "");
        }
        EXPECT_EQ(Console({}), std::string("file = \"") + text + "\"\n" + numbers);
        const ValueEntry copy(list_.At(0));
        list_.Find("file")->SetFromText(nullptr);
        EXPECT_STREQ(copy.AsText(), text);
        EXPECT_EQ(copy.AsInt(), list_.At(1).AsInt()) << text;
        EXPECT_EQ(copy.AsUInt(), list_.At(2).AsUInt()) << text;
    }
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
    EXPECT_EQ(Console({"set", "limit", "1"}), "");
    EXPECT_EQ(Console({"reset", "mask"}), "");
    EXPECT_EQ(Console({"show", "limit"}), "limit = 1\n");
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
}  // namespace Quenda
