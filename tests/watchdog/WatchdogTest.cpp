#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/log/TraceList.h"
#include "core/output/FormatText.h"
#include "core/output/StringWritable.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TempDir.h"
#include "watchdog/WatchdogDevice.h"

using namespace Quenda;

namespace {

const char* const kNames[] = {"cnt0", "cnt1", "cnt2", "cnt3", "en", "reset", "", "all"};

class WatchdogTest : public testing::Test {
protected:
    void SetUp() override {
        for (size_t i = 0; i < WatchdogControl::kSlotCount; ++i) {
            if (i != WatchdogControl::kEnabledText) {
                control_.Set(WatchdogControl::Slot(i), dir_.Write(kNames[i], "").c_str());
            }
        }
        GlobalTraceList().AddSink(9, &traces_);
        before_ = OpenDescriptors();
    }
    void TearDown() override { EXPECT_EQ(OpenDescriptors(), before_) << "leaked descriptors"; }

    // What stands in the control files, in the order of the slots.
    std::string Written() const {
        std::string all;
        for (const char* name : kNames) {
            all += *name == '\0' ? "" : ReadFile(dir_.File(name)) + "|";
        }
        return all;
    }
    // An operation's code and text, as the monitor would ask for them.
    std::string Outcome(const std::function<uint32_t(char*, size_t)>& operation) {
        char text[54] = "untouched";
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

    TempDir dir_;
    WatchdogControl control_;
    StringWritable traces_;
    std::map<int, std::string> before_;
};

TEST(WatchdogControlTest, NamesTheDriversFilesAndCutsLongTexts) {
    const char* const expected[] = {"/proc/cpld/watchdog/intial-cnt0",
                                    "/proc/cpld/watchdog/intial-cnt1",
                                    "/proc/cpld/watchdog/intial-cnt2",
                                    "/proc/cpld/watchdog/intial-cnt3",
                                    "/proc/cpld/watchdog/control-en",
                                    "/proc/cpld/watchdog/control-reset",
                                    "1",
                                    "/proc/cpld/watchdog/control-all"};
    WatchdogControl control;
    for (size_t i = 0; i < WatchdogControl::kSlotCount; ++i) {
        EXPECT_STREQ(control.Get(WatchdogControl::Slot(i)), expected[i]);
    }
    control.Set(WatchdogControl::kControlEn, std::string(60, 'x').c_str());
    EXPECT_EQ(control.Get(WatchdogControl::kControlEn), std::string(55, 'x'));
    EXPECT_STREQ(control.Get(WatchdogControl::kControlReset), expected[5]);
}

TEST_F(WatchdogTest, StartWritesTheFirstCounterWholeAndAZeroEachForTheRest) {
    const struct {
        uint32_t seconds;
        std::vector<const char*> texts;
    } cases[] = {{30, {"0xf0", "0x82", "0x96", "0x5"}},
                 {60, {"0xe0", "0x5", "0x2d", "0xb"}},
                 {300, {"0x60", "0x1d", "0xe1", "0x37"}}};
    for (auto c : cases) {
        SetUp();
        traces_.Clear();
        EXPECT_EQ(Start(c.seconds), "0 untouched");
        EXPECT_EQ(Written(), std::string(c.texts[0]) + "|0|0|0||0|00|");
        std::string expected;
        c.texts.insert(c.texts.end(), {"0x1", "0x2", "0x1"});
        for (const char* text : c.texts) {
            const int length = text == c.texts[0] ? 4 : 1;
            expected += FormatText("wdWriteDevice - write buf %s len %d\n", text, length);
        }
        EXPECT_EQ(traces_.Text().substr(traces_.Text().find('\n') + 1), expected);
    }
}

TEST_F(WatchdogTest, WritesStopAtTheFirstFileThatFails) {
    const char* const writtenBefore[] = {"",      "0x60|",        "0x60|0|",       "0x60|0|0|",
                                         nullptr, "0x60|0|0|0||", "0x60|0|0|0||0|"};
    for (size_t i = 0; i < 7; ++i) {
        if (writtenBefore[i] == nullptr) {
            continue;  // control-en is not written
        }
        SetUp();
        WatchdogDescriptors fds;
        uint32_t error = 77;
        ASSERT_EQ(wdOpenAll(control_, &fds, &error), WD_DB_OK);
        EXPECT_EQ(error, 77U);
        int* const all[] = {&fds.counter[0], &fds.counter[1],   &fds.counter[2], &fds.counter[3],
                            &fds.controlEn,  &fds.controlReset, &fds.controlAll};
        EXPECT_EQ(fcntl(*all[i], F_GETFL) & (O_ACCMODE | O_SYNC), O_RDWR | O_SYNC);
        close(*all[i]);
        *all[i] = i % 2 == 0 ? -1 : 1000;
        EXPECT_EQ(wdSetWatchdogTime(300, fds, &error), i % 2 == 0 ? WD_INV_FD_DESC : WD_READ_ERR);
        EXPECT_EQ(error, i % 2 == 0 ? WD_INV_FD_DESC : WD_READ_ERR);
        wdCloseAll(fds);
        std::string expected = writtenBefore[i];
        expected.append(static_cast<size_t>(7 - std::count(expected.begin(), expected.end(), '|')),
                        '|');
        EXPECT_EQ(Written(), expected) << "slot " << i;
    }
}

TEST_F(WatchdogTest, MissingFileFailsBeforeAnythingIsWritten) {
    for (const char* name : kNames) {
        SetUp();
        if (*name == '\0' || unlink(dir_.File(name).c_str()) == -1) {
            continue;
        }
        uint32_t state = 5;
        EXPECT_EQ(Start(300), "1 wdStart (238) : WD_FILE_NOT_FOUND") << name;
        EXPECT_EQ(Stop(), "1 wdStop (268) : WD_FILE_NOT_FOUND") << name;
        EXPECT_EQ(IsEnabled(&state), "1 wdIsEnabled (306) : WD_FILE_NOT_FOUND") << name;
        EXPECT_EQ(state, 5U);
        EXPECT_EQ(Written(), "|||||||") << name;
        EXPECT_EQ(OpenDescriptors(), before_) << name;
    }
}

TEST_F(WatchdogTest, OtherFailuresNameTheStepAndTheCode) {
    for (const uint32_t seconds : {0U, 45U, 301U}) {
        EXPECT_EQ(Start(seconds), "9 wdStart (245) : WD_INV_ENTRY") << seconds;
    }
    EXPECT_EQ(IsEnabled(nullptr), "4 wdIsEnabled (299) : WD_NULL_POINTER");
    EXPECT_EQ(Written(), "|||||||");
    control_.Set(WatchdogControl::kControlAll, "/dev/full");
    EXPECT_EQ(Start(30), "3 wdStart (245) : WD_READ_ERR");
    EXPECT_EQ(Stop(), "3 wdStop (275) : WD_READ_ERR");
    char text[] = "kept";
    EXPECT_EQ(wdStart(control_, 45, text, 1), WD_INV_ENTRY);
    EXPECT_EQ(wdStart(control_, 45, nullptr, 54), WD_INV_ENTRY);
    EXPECT_STREQ(text, "kept");
}

TEST_F(WatchdogTest, StopWritesAWholeZero) {
    EXPECT_EQ(Stop(), "0 untouched");
    EXPECT_EQ(Written(), "||||||0x0|");
}

TEST_F(WatchdogTest, EnabledIsTheFirstOfTwoBytes) {
    const struct {
        const char* content;
        uint32_t state;
        const char* outcome;
    } cases[] = {
        {"1\n", kWatchdogEnabled, "0 untouched"},      {"10", kWatchdogEnabled, "0 untouched"},
        {"0\n", kWatchdogDisabled, "0 untouched"},     {"\n1", kWatchdogDisabled, "0 untouched"},
        {"1", 5, "3 wdIsEnabled (313) : WD_READ_ERR"}, {"", 5, "3 wdIsEnabled (313) : WD_READ_ERR"},
    };
    for (const auto& c : cases) {
        dir_.Write("en", c.content);
        uint32_t state = 5;
        EXPECT_EQ(IsEnabled(&state), c.outcome) << c.content;
        EXPECT_EQ(state, c.state) << c.content;
    }
}

TEST(WatchdogErrorTest, TextIsCutToTheBuffer) {
    const struct {
        uint32_t code;
        size_t length;
        uint32_t result;
        const char* text;
    } cases[] = {
        {9, 54, WD_DB_OK, "wdStart (7) : WD_INV_ENTRY"},
        {0, 54, WD_DB_OK, "wdStart (7) : WD_DB_OK"},
        {16, 54, WD_DB_OK, "wdStart (7) : WD_VERIFICATION_FAILED"},
        {17, 54, WD_DB_OK, "wdStart (7) : UNKNOWN"},
        {25, 54, WD_DB_OK, "wdStart (7) : UNKNOWN"},
        {UINT32_MAX, 54, WD_DB_OK, "wdStart (7) : UNKNOWN"},
        {9, 10, WD_DB_OK, "wdStart "},
        {9, 3, WD_DB_OK, "w"},
        {9, 2, WD_DB_OK, ""},
        {9, 1, WD_INV_ENTRY, "kept"},
        {9, 0, WD_INV_ENTRY, "kept"},
    };
    for (const auto& c : cases) {
        char text[60] = "kept";
        text[54] = '#';
        EXPECT_EQ(wdFormatError("wdStart", 7, c.code, text, c.length), c.result) << c.length;
        EXPECT_STREQ(text, c.text) << c.length;
        EXPECT_EQ(text[54], '#');
    }
    EXPECT_EQ(wdFormatError("wdStart", 7, 9, nullptr, 54), WD_NULL_POINTER);
}

TEST_F(WatchdogTest, StepsRefuseNullPointersAndDescriptorsThatAreNotOpen) {
    char buffer[2];
    int fd = 0;
    const WatchdogDescriptors closed, noEnable = {{3, 3, 3, 3}, 0, 3, 3};
    const struct {
        std::function<uint32_t(uint32_t*)> step;
        uint32_t expected;
    } cases[] = {
        {[&](uint32_t* e) { return wdOpenDevice(nullptr, 0, &fd, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdOpenDevice("/none", 0, &fd, e); }, WD_FILE_NOT_FOUND},
        {[&](uint32_t* e) { return wdOpenAll(control_, nullptr, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdReadDevice(-1, nullptr, 2, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdReadDevice(1000, nullptr, 2, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdReadDevice(1000, buffer, 2, e); }, WD_READ_ERR},
        {[&](uint32_t* e) { return wdWriteDevice(-1, nullptr, 2, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdWriteDevice(1000, nullptr, 2, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdWriteDevice(1000, "0x0", 2, e); }, WD_READ_ERR},
        {[&](uint32_t* e) { return wdSetWatchdogTime(45, closed, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdSetWatchdogTime(45, noEnable, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdDisable(0, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdDisable(-1, e); }, WD_INV_FD_DESC},
        {[&](uint32_t* e) { return wdReadEnable(0, nullptr, e); }, WD_NULL_POINTER},
        {[&](uint32_t* e) { return wdReadEnable(0, buffer, e); }, WD_INV_FD_DESC},
    };
    for (const auto& c : cases) {
        uint32_t error = 77;
        EXPECT_EQ(c.step(&error), c.expected) << "case " << &c - cases;
        EXPECT_EQ(error, c.expected) << "case " << &c - cases;
        EXPECT_EQ(c.step(nullptr), WD_NULL_POINTER) << "case " << &c - cases;
    }
}

TEST_F(WatchdogTest, TracesAtLevelNineOnly) {
    StringWritable eight;
    GlobalTraceList().AddSink(8, &eight);
    const WatchdogDescriptors fds = {{1, 2, 3, 4}, 5, 6, 7};
    uint32_t error = 12;
    (void)wdSetWatchdogTime(45, fds, &error);
    char buffer[2];
    (void)wdReadDevice(1000, buffer, sizeof(buffer), &error);
    (void)wdWriteDevice(1000, "0x0", 3, &error);
    EXPECT_EQ(traces_.Text(),
              FormatText("wdSetWatchdogTime - time: 45  fdtimer0: 1  fdtimer1: 2  fdtimer2: 3  "
                         "fdtimer3: 4  fden: 5  fdreset: 6  fdall: 7  err: 12\n"
                         "wdReadDevice - read buf %p len 2\n"
                         "wdWriteDevice - write buf 0x0 len 3\n",
                         static_cast<void*>(buffer)));
    EXPECT_EQ(eight.Text(), "");
}

}  // namespace
