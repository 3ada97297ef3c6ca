#include "core/values/ValueList.h"

#include <gtest/gtest.h>

#include "core/options/OptionsNodeEdit.h"
#include "core/output/StringWritable.h"

namespace Quenda {
namespace {

using Words = std::vector<const char*>;

std::vector<ValueDefinition> AllKinds() {
    return {ValueDefinition::Text("file", "/var/run/x"), ValueDefinition::Int("limit", -10),
            ValueDefinition::UInt("mask", 7), ValueDefinition::Double("ratio", 0.5)};
}

std::string Console(ValueList& list, const Words& words) {
    StringWritable out;
    list.Command(&out, static_cast<int>(words.size()), words.data());
    return out.Text();
}

constexpr char kDefaults[] = "file = \"/var/run/x\"\nlimit = -10\nmask = 7\nratio = 0.500000\n";
constexpr char kUsage[] = "Usage: show [key] | reset [key] | set {key} {value}\n";

TEST(ValueEntryTest, TextsAreParsedByKindAndRejectNothing) {
    const struct {
        const char* text;
        int32_t asInt;
        uint32_t asUInt;
        double asDouble;
    } cases[] = {
        {"0x1F", 31, 31, 31.0},        {"017", 15, 15, 17.0},
        {"-1", -1, 4294967295U, -1.0}, {"5000000000", 2147483647, 4294967295U, 5e9},
        {"1.75x", 1, 1, 1.75},         {"abc", 0, 0, 0.0},
        {nullptr, 0, 0, 0.0},
    };
    for (const auto& c : cases) {
        ValueList list(AllKinds());
        for (const char* name : {"file", "limit", "mask", "ratio"}) {
            list.Find(name)->SetFromText(c.text);
        }
        EXPECT_STREQ(list.At(0).AsText(), c.text);
        for (size_t kind : {0U, 1U}) {  // a text is converted when it is asked
            EXPECT_EQ(list.At(kind).AsInt(), c.asInt) << c.text;
        }
        EXPECT_EQ(list.At(2).AsUInt(), c.asUInt) << c.text;
        EXPECT_EQ(list.At(3).AsDouble(), c.asDouble) << c.text;
    }
}

TEST(ValueEntryTest, CopiesAndDefaultsOwnTheirText) {
    ValueEntry entry(ValueDefinition::Text("t", nullptr));
    EXPECT_EQ(entry.AsText(), nullptr);
    StringWritable out;
    entry.Print(&out);
    entry.SetFromText("abc");
    const ValueEntry copy(entry);
    entry.SetFromText(entry.AsText() + 1);  // a part of its own text
    entry.PrintValue(&out);
    EXPECT_EQ(out.Text(), "t = \"(null)\"\n\"bc\"\n");
    EXPECT_STREQ(copy.AsText(), "abc");
}

TEST(ValueListTest, LoadTakesPresentTextsAndDefaultsForTheRest) {
    ValueList list(AllKinds());
    OptionsNodeEdit options;
    EXPECT_TRUE(options.SetLeaf("file", "/tmp/y", nullptr));
    EXPECT_TRUE(options.SetLeaf("limit", 5000000U, nullptr));
    EXPECT_TRUE(options.SetLeaf("mask", "", nullptr));
    EXPECT_TRUE(options.SetLeaf("ratio", 2.25, nullptr));
    list.Find("mask")->SetFromText("1");
    EXPECT_TRUE(list.Load(options));
    EXPECT_EQ(Console(list, {}),
              "file = \"/tmp/y\"\nlimit = 5000000\nmask = 7\nratio = 2.250000\n");
    const Json::Value array(Json::arrayValue);
    EXPECT_FALSE(list.Load(OptionsNode(&array)));
    EXPECT_FALSE(list.Load(OptionsNode()));
    EXPECT_EQ(list.At(1).AsInt(), 5000000);
    EXPECT_TRUE(list.Load(OptionsNode(nullptr)));  // null: no option is present
    EXPECT_EQ(Console(list, {"show"}), kDefaults);
}

TEST(ValueListTest, ConsoleShowsSetsAndResets) {
    ValueList list(AllKinds());
    const struct {
        Words words;
        const char* output;
    } cases[] = {
        {{}, kDefaults},
        {{"set", "mask", "0x1F"}, ""},
        {{"show", "mask"}, "mask = 31\n"},
        {{"set", "mask", "abc"}, ""},
        {{"show", "mask"}, "mask = 0\n"},
        {{"reset", "mask"}, ""},
        {{"show", "mask"}, "mask = 7\n"},
        {{"show", "Mask"}, "Cannot find value \"Mask\"\n"},
        {{"set", "mask"}, kUsage},
        {{"SHOW"}, kUsage},
        {{"history"}, kUsage},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Console(list, c.words), c.output) << &c - cases;
    }
    StringWritable out;
    list.Command(&out, -1, nullptr);
    EXPECT_EQ(out.Text(), kUsage);
}

TEST(ValueListTest, HistoryIsCreatedOnFirstUseAndLostWhenDisabled) {
    ValueList list(AllKinds());
    list.EnableHistory(true);
    EXPECT_EQ(Console(list, {"HISTORY"}),
              "Usage: show [key] | reset [key] | set {key} {value} | history\n");
    EXPECT_EQ(Console(list, {"history", "snapshot"}), "Created value history logger.\n");
    list.EnableHistory(true);
    EXPECT_NE(Console(list, {"history", "show"}).find("mask = 7\n"), std::string::npos);
    list.EnableHistory(false);
    EXPECT_EQ(Console(list, {"history", "show"}), kUsage);
    list.EnableHistory(true);
    EXPECT_EQ(Console(list, {"history", "show"}), "Created value history logger.\n");
}

}  // namespace
}  // namespace Quenda
