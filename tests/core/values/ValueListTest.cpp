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
        const char* asText;
        int32_t asInt;
        uint32_t asUInt;
        double asDouble;
    } cases[] = {
        {"0x1F", "0x1F", 31, 31, 31.0},
        {"017", "017", 15, 15, 17.0},
        {"-1", "-1", -1, 4294967295U, -1.0},
        {"5000000000", "5000000000", 2147483647, 4294967295U, 5e9},
        {"1.75x", "1.75x", 1, 1, 1.75},
        {"abc", "abc", 0, 0, 0.0},
        {"", "", 0, 0, 0.0},
        {nullptr, nullptr, 0, 0, 0.0},
    };
    for (const auto& c : cases) {
        ValueEntry text(ValueDefinition::Text("t", "default"));
        ValueEntry number(ValueDefinition::Int("i", 99));
        ValueEntry unsignedNumber(ValueDefinition::UInt("u", 99));
        ValueEntry real(ValueDefinition::Double("d", 99.0));
        for (ValueEntry* entry : {&text, &number, &unsignedNumber, &real}) {
            entry->SetFromText(c.text);
        }
        EXPECT_STREQ(text.AsText(), c.asText);
        EXPECT_EQ(number.AsInt(), c.asInt) << c.asText;
        EXPECT_EQ(unsignedNumber.AsUInt(), c.asUInt) << c.asText;
        EXPECT_EQ(real.AsDouble(), c.asDouble) << c.asText;
        // Conversions between kinds.
        EXPECT_EQ(text.AsInt(), c.asInt) << c.asText;
        EXPECT_EQ(text.AsUInt(), c.asUInt) << c.asText;
        EXPECT_EQ(text.AsDouble(), c.asDouble) << c.asText;
        EXPECT_EQ(number.AsUInt(), static_cast<uint32_t>(c.asInt)) << c.asText;
        EXPECT_EQ(real.AsInt(), c.asDouble > 2e9 ? 2147483647 : static_cast<int>(c.asDouble));
        EXPECT_EQ(number.AsText(), nullptr);
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
        {{"set", "limit", "1"}, ""},
        {{"reset"}, ""},
        {{"show"}, kDefaults},
        {{"show", "Mask"}, "Cannot find value \"Mask\"\n"},
        {{"reset", "x"}, "Cannot find value \"x\"\n"},
        {{"set", "x", "1"}, "Cannot find value \"x\"\n"},
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
    ValueList none({});
    EXPECT_EQ(Console(none, {}), "No values\n");
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
