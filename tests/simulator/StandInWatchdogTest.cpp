#include "simulator/StandInWatchdog.h"

#include <gtest/gtest.h>

#include <cmath>

using Simulator::StandInWatchdog;

TEST(StandInWatchdogTest, FirstCountersByteTellsTheBiteTime) {
    const struct {
        const char* byte;
        double seconds;  // 0: not armed
        const char* choice;
        const char* start;
    } cases[] = {{"0xf0", 30, "", "armed with 30 s"},
                 {"0xe0", 60, "", "armed with 60 s"},
                 {"0x60", 300, "", "armed with 300 s"},
                 {"0x61", 0, "no bite time begins with the byte 0x61", ""}};
    for (const auto& c : cases) {
        StandInWatchdog watchdog;
        EXPECT_EQ(watchdog.Write("intial-cnt0", c.byte, 100), c.choice);
        EXPECT_EQ(watchdog.Write("intial-cnt1", "0", 100), "");
        EXPECT_EQ(watchdog.Write("control-all", "0", 100), c.start);
        EXPECT_EQ(watchdog.Write("control-all", "0", 105), "") << "the first start counts";
        EXPECT_EQ(std::isinf(watchdog.NextEvent()), c.seconds == 0) << c.byte;
        EXPECT_FALSE(watchdog.HasBitten(100 + c.seconds - 0.01)) << c.byte;
        EXPECT_EQ(watchdog.HasBitten(100 + c.seconds), c.seconds != 0) << c.byte;
    }
}
