#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <sstream>
#include <vector>

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
    control_.Set(Slot::kControlAll, "/dev/full");
    EXPECT_EQ(Stop(), "3 wdStop (275) : WD_READ_ERR");
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
    EXPECT_EQ(state, 1U);
    EXPECT_EQ(ask("0\n"), "0 ");
    EXPECT_EQ(state, 2U);
    EXPECT_EQ(ask("1"), "3 wdIsEnabled (313) : WD_READ_ERR");
    EXPECT_EQ(Outcome(wdIsEnabled(control_, nullptr, text_.data(), text_.size())),
              "4 wdIsEnabled (299) : WD_NULL_POINTER");
    control_.Set(Slot::kControlAll, "/nonexistent");
    EXPECT_EQ(ask("1\n"), "1 wdIsEnabled (306) : WD_FILE_NOT_FOUND");
}

TEST_F(WatchdogTest, StepsRefuseWhatIsMissing) {
    WatchdogDescriptors closed;
    char buffer[2];
    uint32_t error = 7;
    EXPECT_EQ(wdSetWatchdogTime(30, closed, &error), WD_INV_FD_DESC);
    EXPECT_EQ(wdSetWatchdogTime(30, closed, nullptr), WD_NULL_POINTER);
    const std::string none =
        " fdtimer0: 0  fdtimer1: 0  fdtimer2: 0  fdtimer3: 0  fden: 0  "
        "fdreset: 0  fdall: 0  err: ";
    EXPECT_EQ(traces_.Text(), "wdSetWatchdogTime - time: 30 " + none +
                                  "7\nwdSetWatchdogTime - time: 30 " + none + "0\n");
    const std::vector<uint32_t> codes = {
        wdOpenDevice("/", 0, &closed[0], nullptr),
        wdOpenDevice(nullptr, 0, &closed[0], &error),
        wdOpenAll(control_, &closed, nullptr),
        wdOpenAll(control_, nullptr, &error),
        wdReadDevice(-1, buffer, 1, nullptr),
        wdReadDevice(-1, buffer, 1, &error),
        wdReadDevice(0, nullptr, 1, &error),
        wdDisable(0, nullptr),
        wdDisable(0, &error),
        wdReadEnable(0, buffer, nullptr),
        wdReadEnable(0, nullptr, &error),
        wdReadEnable(0, buffer, &error),
    };
    EXPECT_EQ(codes, std::vector<uint32_t>({4, 4, 4, 4, 4, 2, 4, 4, 2, 4, 4, 2}));
}

// A caller that has closed its standard streams gets their numbers for the files.
TEST_F(WatchdogTest, DescriptorsFrom0AreUsedAndFrom1Closed) {
    const auto run = [&] {
        WatchdogDescriptors open;
        uint32_t error = 0;
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        EXPECT_EQ(wdOpenAll(control_, &open, &error), WD_DB_OK);
        EXPECT_EQ(fcntl(open[0], F_GETFL) & (O_ACCMODE | O_SYNC), O_RDWR | O_SYNC);
        EXPECT_EQ(wdWriteDevice(open[0], "0", 1, &error), WD_DB_OK);
        wdCloseAll(open);
        EXPECT_NE(fcntl(0, F_GETFD), -1);
        EXPECT_EQ(fcntl(1, F_GETFD), -1);
        _exit(HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
    control_.Set(Slot::kControlAll, "/nonexistent");
    WatchdogDescriptors none;
    uint32_t error = 0;
    EXPECT_EQ(wdOpenAll(control_, &none, &error), WD_FILE_NOT_FOUND);
    EXPECT_EQ(error, WD_FILE_NOT_FOUND);
}

TEST(WatchdogControlTest, PathsOfTheBoardAndOthersOf55Characters) {
    WatchdogControl control;
    std::string texts;
    for (size_t slot = 0; slot < WatchdogControl::kSlotCount; ++slot) {
        texts += std::string(control.Get(WatchdogControl::Slot(slot))) + " ";
    }
    const std::string folder = "/proc/cpld/watchdog/";
    EXPECT_EQ(texts, folder + "intial-cnt0 " + folder + "intial-cnt1 " + folder + "intial-cnt2 " +
                         folder + "intial-cnt3 " + folder + "control-en " + folder +
                         "control-reset 1 " + folder + "control-all ");
    control.Set(WatchdogControl::kCounter0, std::string(60, 'x').c_str());
    EXPECT_EQ(control.Get(WatchdogControl::kCounter0), std::string(55, 'x'));
}

TEST(FormatErrorTest, CodesHaveTheirNames) {
    const uint32_t codes[] = {WD_DB_OK,
                              WD_FILE_NOT_FOUND,
                              WD_INV_FD_DESC,
                              WD_READ_ERR,
                              WD_NULL_POINTER,
                              WD_WRITE_ERROR,
                              WD_IOCTL_ERROR,
                              WD_IOCTL_MMCINFO,
                              WD_IOCTL_LSEEK,
                              WD_INV_ENTRY,
                              WD_INV_FILE_IO,
                              WD_INV_FILE_SIZE,
                              WD_ERASE_ERROR,
                              WD_CMP_FAILED,
                              WD_DEV_NOT_MATCHED,
                              WD_INV_MATCH_SIZE,
                              WD_VERIFICATION_FAILED,
                              17,
                              25};
    std::string names;
    for (const uint32_t code : codes) {
        char text[40];
        EXPECT_EQ(wdFormatError("wdStop", 275, code, text, sizeof(text)), WD_DB_OK);
        names += std::string(text).substr(strlen("wdStop (275) :"));
    }
    EXPECT_EQ(
        names,
        " WD_DB_OK WD_FILE_NOT_FOUND WD_INV_FD_DESC WD_READ_ERR WD_NULL_POINTER WD_WRITE_ERROR"
        " WD_IOCTL_ERROR WD_IOCTL_MMCINFO WD_IOCTL_LSEEK WD_INV_ENTRY WD_INV_FILE_IO"
        " WD_INV_FILE_SIZE WD_ERASE_ERROR WD_CMP_FAILED WD_DEV_NOT_MATCHED"
        " WD_INV_MATCH_SIZE WD_VERIFICATION_FAILED UNKNOWN UNKNOWN");
}

TEST(FormatErrorTest, TextIsCutToTheBuffer) {
    const struct {
        size_t length;
        uint32_t code;
        std::string text;
    } cases[] = {
        {1, WD_INV_ENTRY, "xxxxxx"},
        {2, WD_DB_OK, std::string("\0\0xxxx", 6)},
        {5, WD_DB_OK, std::string("wdS\0\0x", 6)},
    };
    for (const auto& c : cases) {
        std::string buffer(6, 'x');
        EXPECT_EQ(wdFormatError("wdStop", 275, WD_READ_ERR, &buffer[0], c.length), c.code);
        EXPECT_EQ(buffer, c.text) << c.length;
    }
    EXPECT_EQ(wdFormatError("wdStop", 275, WD_READ_ERR, nullptr, 6), WD_NULL_POINTER);
}

}  // namespace
