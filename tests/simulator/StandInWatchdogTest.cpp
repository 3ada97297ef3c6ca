#include "simulator/StandInWatchdog.h"

#include <gtest/gtest.h>

#include <cmath>

using Simulator::StandInWatchdog;

namespace {

std::string Arm(StandInWatchdog* watchdog, const std::string& byte, double now) {
    watchdog->Write("intial-cnt0", byte, now);
    for (const char* file : {"intial-cnt1", "intial-cnt2", "intial-cnt3", "control-reset"}) {
        EXPECT_EQ(watchdog->Write(file, "0", now), "");
    }
    const std::string text = watchdog->Write("control-all", "0", now);
    EXPECT_EQ(watchdog->Write("control-all", "0", now + 5), "");
    return text;
}

}  // namespace

TEST(StandInWatchdogTest, FirstCountersByteTellsTheBiteTime) {
    const struct {
        const char* byte;
        double seconds;
    } cases[] = {{"0xf0", 30}, {"0xe0", 60}, {"0x60", 300}};
    for (const auto& c : cases) {
        StandInWatchdog watchdog;
        Arm(&watchdog, c.byte, 100);
        EXPECT_FALSE(watchdog.HasBitten(100 + c.seconds - 0.01)) << c.byte;
        EXPECT_TRUE(watchdog.HasBitten(100 + c.seconds)) << c.byte;
    }
}

TEST(StandInWatchdogTest, UnknownByteIsReportedAndArmsNothing) {
    StandInWatchdog watchdog;
    EXPECT_EQ(watchdog.Write("intial-cnt0", "0x61", 0), "no bite time begins with the byte 0x61");
    EXPECT_EQ(watchdog.Write("control-all", "0", 0), "");
    EXPECT_FALSE(watchdog.IsArmed());
    EXPECT_TRUE(std::isinf(watchdog.NextEvent()));
}

TEST(StandInWatchdogTest, RearmingPutsOffTheBiteAndTheCountdown) {
    StandInWatchdog watchdog;
    EXPECT_EQ(Arm(&watchdog, "0xf0", 0), "armed with 30 s");
    EXPECT_EQ(watchdog.Tick(4.9), "");
    EXPECT_EQ(watchdog.Tick(5.1), "bites in 25 s");
    EXPECT_EQ(watchdog.Tick(5.2), "");
    EXPECT_EQ(Arm(&watchdog, "0x60", 29), "armed with 300 s");
    EXPECT_FALSE(watchdog.HasBitten(328));
    EXPECT_DOUBLE_EQ(watchdog.NextEvent(), 29 + 50);
    EXPECT_EQ(watchdog.Tick(79), "bites in 250 s");
}
