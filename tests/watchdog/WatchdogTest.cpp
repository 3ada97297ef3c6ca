#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <sstream>

#include "core/log/TraceList.h"
#include "core/output/StringWritable.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TempDir.h"
#include "watchdog/WatchdogDevice.h"

using namespace Quenda;

namespace {

// Each test has its own control files, empty at first, in the order of their slots.
struct WatchdogTest : testing::Test {
    void SetUp() override {
        for (const Slot slot : kFiles) {
            control_.Set(slot, dir_.Write(std::to_string(slot), "").c_str());
        }
        GlobalTraceList().AddSink(9, &traces_);
        before_ = OpenDescriptors();
    }
    void TearDown() override { EXPECT_EQ(OpenDescriptors(), before_) << "leaked descriptors"; }

    // Returns the texts written to the control files, and empties the files.
    std::string Written() const {
        std::string all;
        for (const Slot slot : kFiles) {
            all += ReadFile(dir_.File(std::to_string(slot))) + "|";
            dir_.Write(std::to_string(slot), "");
        }
        return all;
    }
    // An operation's code and text.
    std::string Outcome(uint32_t code) {
        return std::to_string(code) + " " + std::exchange(text_, {}).data();
    }
    std::string Start(uint32_t seconds) {
        return Outcome(wdStart(control_, seconds, text_.data(), text_.size()));
    }
    std::string Stop() { return Outcome(wdStop(control_, text_.data(), text_.size())); }

    using Slot = WatchdogControl::Slot;
    static constexpr Slot kFiles[] = {Slot::kCounter0,  Slot::kCounter1,  Slot::kCounter2,
                                      Slot::kCounter3,  Slot::kControlEn, Slot::kControlReset,
                                      Slot::kControlAll};
    TempDir dir_;
    WatchdogControl control_;
    StringWritable traces_;
    std::array<char, 54> text_{};
    std::map<int, std::string> before_;
};

// Only the first counter file gets more than a "0"; the traces show the whole values of the others.
TEST_F(WatchdogTest, StartWritesTheBytesOfTheBiteTime) {
    const std::tuple<uint32_t, std::string, std::string> cases[] = {
        {30, "0xf0", "0x82 0x96 0x5"},
        {60, "0xe0", "0x5 0x2d 0xb"},
        {300, "0x60", "0x1d 0xe1 0x37"}};
    for (const auto& [seconds, first, others] : cases) {
        const size_t before = traces_.Text().size();
        EXPECT_EQ(Start(seconds), "0 ");
        EXPECT_EQ(Written(), first + "|0|0|0||0|00|");
        std::string expected = "wdWriteDevice - write buf " + first + " len 4\n";
        std::istringstream texts(others + " 0x1 0x2 0x1");
        for (std::string text; texts >> text;) {
            expected += "wdWriteDevice - write buf " + text + " len 1\n";
        }
        EXPECT_EQ(traces_.Text().substr(traces_.Text().find('\n', before) + 1), expected);
    }
}

TEST_F(WatchdogTest, WritesStopAtTheFirstThatFailsAndStopWritesAWholeZero) {
    std::array<int, WatchdogControl::kSlotCount> none{}, garbage{3, 4, 5, 6, 7, 8, 9, 10};
    EXPECT_EQ(*new (&garbage) WatchdogDescriptors, none);  // a refusal closes them as they are
    EXPECT_EQ(Start(301), "9 wdStart (245) : WD_INV_ENTRY");
    EXPECT_EQ(Written(), "|||||||");
    EXPECT_EQ(Stop(), "0 ");
    EXPECT_EQ(Written(), "||||||0x0|");
    control_.Set(Slot::kControlReset, "/dev/full");
    EXPECT_EQ(Start(300), "3 wdStart (245) : WD_READ_ERR");
    EXPECT_EQ(Written(), "0x60|0|0|0||||");
    control_.Set(Slot::kControlAll, "/nonexistent");
    EXPECT_EQ(Start(300), "1 wdStart (238) : WD_FILE_NOT_FOUND");
    EXPECT_EQ(Stop(), "1 wdStop (268) : WD_FILE_NOT_FOUND");
    EXPECT_EQ(Written(), "|||||||");
}

TEST_F(WatchdogTest, ControlFileTellsWhetherItIsEnabled) {
    uint32_t state = 0;
    const auto ask = [&](const char* held) {
        dir_.Write(std::to_string(Slot::kControlEn), held);
        return Outcome(wdIsEnabled(control_, &state, text_.data(), text_.size()));
    };
    EXPECT_EQ(ask("1\n"), "0 ");
    EXPECT_EQ(state, kWatchdogEnabled);
    EXPECT_EQ(ask("0\n"), "0 ");
    EXPECT_EQ(state, kWatchdogDisabled);
    EXPECT_EQ(ask("1"), "3 wdIsEnabled (313) : WD_READ_ERR");
}

}  // namespace
