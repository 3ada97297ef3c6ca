#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>

#include "core/log/TraceList.h"
#include "core/output/FormatText.h"
#include "core/output/StringWritable.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TempDir.h"
#include "watchdog/WatchdogDevice.h"

using namespace Quenda;

namespace {

// Control files of its own, empty at first, in the order of their slots.
class WatchdogTest : public testing::Test {
protected:
    void SetUp() override {
        for (const Slot slot : kFiles) {
            control_.Set(slot, dir_.Write(std::to_string(slot), "").c_str());
        }
        GlobalTraceList().AddSink(9, &traces_);
        before_ = OpenDescriptors();
    }
    void TearDown() override { EXPECT_EQ(OpenDescriptors(), before_) << "leaked descriptors"; }

    // What stands in the control files.
    std::string Written() const {
        std::string all;
        for (const Slot slot : kFiles) {
            all += ReadFile(dir_.File(std::to_string(slot))) + "|";
        }
        return all;
    }
    // An operation's code and text.
    static std::string Outcome(const std::function<uint32_t(char*, size_t)>& operation) {
        char text[54] = "-";
        const uint32_t code = operation(text, sizeof(text));
        return std::to_string(code) + " " + text;
    }
    std::string Start(uint32_t seconds) {
        return Outcome([&](char* t, size_t n) { return wdStart(control_, seconds, t, n); });
    }
    std::string Stop() {
        return Outcome([&](char* t, size_t n) { return wdStop(control_, t, n); });
    }
    std::string IsEnabled(uint32_t* state) {
        return Outcome([&](char* t, size_t n) { return wdIsEnabled(control_, state, t, n); });
    }

    using Slot = WatchdogControl::Slot;
    static constexpr Slot kFiles[] = {Slot::kCounter0,  Slot::kCounter1,  Slot::kCounter2,
                                      Slot::kCounter3,  Slot::kControlEn, Slot::kControlReset,
                                      Slot::kControlAll};
    TempDir dir_;
    WatchdogControl control_;
    StringWritable traces_;
    std::map<int, std::string> before_;
};

TEST(WatchdogControlTest, NamesTheDriversFilesAndCutsLongTexts) {
    WatchdogControl control;
    std::string all;
    for (size_t i = 0; i < WatchdogControl::kSlotCount; ++i) {
        const std::string text = control.Get(WatchdogControl::Slot(i));
        all += text.substr(text.rfind('/') + 1) + " ";
        EXPECT_EQ(text.rfind("/proc/cpld/watchdog/", 0) == 0, text != "1") << text;
    }
    EXPECT_EQ(all,
              "intial-cnt0 intial-cnt1 intial-cnt2 intial-cnt3 control-en control-reset 1 "
              "control-all ");
    control.Set(WatchdogControl::kControlEn, std::string(60, 'x').c_str());
    EXPECT_EQ(control.Get(WatchdogControl::kControlEn), std::string(55, 'x'));
}

TEST_F(WatchdogTest, StartWritesTheFirstCounterWholeAndAZeroEachForTheRest) {
    const std::pair<uint32_t, std::vector<std::string>> cases[] = {
        {30, {"0xf0", "0x82", "0x96", "0x5", "0x1", "0x2", "0x1"}},
        {60, {"0xe0", "0x5", "0x2d", "0xb", "0x1", "0x2", "0x1"}},
        {300, {"0x60", "0x1d", "0xe1", "0x37", "0x1", "0x2", "0x1"}}};
    for (const auto& [seconds, texts] : cases) {
        SetUp();
        traces_.Clear();
        EXPECT_EQ(Start(seconds), "0 -");
        EXPECT_EQ(Written(), texts[0] + "|0|0|0||0|00|");
        std::string expected;
        for (const std::string& text : texts) {
            expected += FormatText("wdWriteDevice - write buf %s len %d\n", text.c_str(),
                                   expected.empty() ? 4 : 1);
        }
        EXPECT_EQ(traces_.Text().substr(traces_.Text().find('\n') + 1), expected);
    }
}

TEST_F(WatchdogTest, WritesStopAtTheFirstThatFails) {
    WatchdogDescriptors fds;
    uint32_t error = 77;
    ASSERT_EQ(wdOpenAll(control_, &fds, &error), WD_DB_OK);
    EXPECT_EQ(fcntl(fds.controlAll, F_GETFL) & (O_ACCMODE | O_SYNC), O_RDWR | O_SYNC);
    WatchdogDescriptors broken = fds;
    broken.controlReset = -1;
    EXPECT_EQ(wdSetWatchdogTime(300, broken, &error), WD_INV_FD_DESC);
    EXPECT_EQ(Written(), "0x60|0|0|0||||");
    wdCloseAll(fds);
    control_.Set(WatchdogControl::kControlAll, "/dev/full");
    EXPECT_EQ(Start(30), "3 wdStart (245) : WD_READ_ERR");
    EXPECT_EQ(Stop(), "3 wdStop (275) : WD_READ_ERR");
}

TEST_F(WatchdogTest, MissingFileFailsBeforeAnythingIsWritten) {
    for (const Slot slot : kFiles) {
        SetUp();
        unlink(control_.Get(slot));
        uint32_t state = 5;
        WatchdogDescriptors fds;
        EXPECT_EQ(wdOpenAll(control_, &fds, &state), WD_FILE_NOT_FOUND);
        EXPECT_EQ(OpenDescriptors(), before_) << slot;
        state = 5;
        EXPECT_EQ(Start(300), "1 wdStart (238) : WD_FILE_NOT_FOUND") << slot;
        EXPECT_EQ(Stop(), "1 wdStop (268) : WD_FILE_NOT_FOUND") << slot;
        EXPECT_EQ(IsEnabled(&state), "1 wdIsEnabled (306) : WD_FILE_NOT_FOUND") << slot;
        EXPECT_EQ(state, 5U);
        EXPECT_EQ(Written(), "|||||||") << slot;
        EXPECT_EQ(OpenDescriptors(), before_) << slot;
    }
}

TEST_F(WatchdogTest, OtherBiteTimesAreRefusedAndStopWritesAWholeZero) {
    for (const uint32_t seconds : {0U, 45U, 301U}) {
        EXPECT_EQ(Start(seconds), "9 wdStart (245) : WD_INV_ENTRY") << seconds;
    }
    EXPECT_EQ(wdStart(control_, 45, nullptr, 54), WD_INV_ENTRY);
    EXPECT_EQ(Stop(), "0 -");
    EXPECT_EQ(Written(), "||||||0x0|");
}

TEST_F(WatchdogTest, EnabledIsTheFirstOfTwoBytes) {
    const std::tuple<const char*, uint32_t, const char*> cases[] = {
        {"1\n", kWatchdogEnabled, "0 -"},
        {"0\n", kWatchdogDisabled, "0 -"},
        {"1", 5, "3 wdIsEnabled (313) : WD_READ_ERR"},
        {"", 5, "3 wdIsEnabled (313) : WD_READ_ERR"}};
    for (const auto& [content, expected, outcome] : cases) {
        dir_.Write(std::to_string(WatchdogControl::kControlEn), content);
        uint32_t state = 5;
        EXPECT_EQ(IsEnabled(&state), outcome) << content;
        EXPECT_EQ(state, expected) << content;
    }
    EXPECT_EQ(IsEnabled(nullptr), "4 wdIsEnabled (299) : WD_NULL_POINTER");
}

TEST(WatchdogErrorTest, TextIsCutToTheBuffer) {
    const std::tuple<uint32_t, size_t, uint32_t, const char*> cases[] = {
        {0, 54, WD_DB_OK, "wdStart (7) : WD_DB_OK"},
        {16, 54, WD_DB_OK, "wdStart (7) : WD_VERIFICATION_FAILED"},
        {17, 54, WD_DB_OK, "wdStart (7) : UNKNOWN"},
        {25, 54, WD_DB_OK, "wdStart (7) : UNKNOWN"},
        {9, 10, WD_DB_OK, "wdStart "},
        {9, 2, WD_DB_OK, ""},
        {9, 1, WD_INV_ENTRY, "kept"},
        {9, 0, WD_INV_ENTRY, "kept"}};
    for (const auto& [code, length, result, expected] : cases) {
        char text[60] = "kept";
        EXPECT_EQ(wdFormatError("wdStart", 7, code, text, length), result) << length;
        EXPECT_STREQ(text, expected) << length;
    }
    EXPECT_EQ(wdFormatError("wdStart", 7, 9, nullptr, 54), WD_NULL_POINTER);
}

TEST_F(WatchdogTest, StepsRefuseNullPointersAndDescriptorsThatAreNotOpen) {
    char buffer[2];
    int fd = 0;
    const WatchdogDescriptors noEnable = {{3, 3, 3, 3}, 0, 3, 3};
    const std::pair<std::function<uint32_t(uint32_t*)>, uint32_t> cases[] = {
        {[&](uint32_t* e) { return wdOpenDevice(nullptr, 0, &fd, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdOpenAll(control_, nullptr, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdReadDevice(-1, nullptr, 2, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdReadDevice(1000, nullptr, 2, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdReadDevice(1000, buffer, 2, e); }, WD_READ_ERR},
        {[&](uint32_t* e) { return wdWriteDevice(-1, nullptr, 2, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdWriteDevice(1000, nullptr, 2, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdSetWatchdogTime(45, noEnable, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdDisable(0, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdReadEnable(0, nullptr, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdReadEnable(0, buffer, e); }, WD_INV_FD_DESC}};
    for (const auto& [step, expected] : cases) {
        uint32_t error = 77;
        EXPECT_EQ(step(&error), expected) << expected;
        EXPECT_EQ(error, expected);
        EXPECT_EQ(step(nullptr), WD_NULL_POINTER);
    }
}

TEST_F(WatchdogTest, TracesAtLevelNine) {
    StringWritable eight;
    GlobalTraceList().AddSink(8, &eight);
    uint32_t error = 12;
    (void)wdSetWatchdogTime(45, {{1, 2, 3, 4}, 5, 6, 7}, &error);
    (void)wdReadDevice(1000, &error, sizeof(error), &error);
    EXPECT_EQ(traces_.Text(),
              FormatText("wdSetWatchdogTime - time: 45  fdtimer0: 1  fdtimer1: 2  fdtimer2: 3  "
                         "fdtimer3: 4  fden: 5  fdreset: 6  fdall: 7  err: 12\n"
                         "wdReadDevice - read buf %p len 4\n",
                         static_cast<void*>(&error)));
    EXPECT_EQ(eight.Text(), "");
}

}  // namespace
