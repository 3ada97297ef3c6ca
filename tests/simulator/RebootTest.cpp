#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

class EndToEndRebootTest : public EndToEnd {};

TEST_F(EndToEndRebootTest, WithNoStrikeAllowedTheFirstFailureLeavesTheTerminalToTheWatchdog) {
    StartMonitor({"-X", "0"});
    ExpectLog("Strike 1! Keldra has not responded for 1 seconds");
    ExpectLog(
        "Maximum consecutive failure threshold exceeded. Rebooting the system to the backup "
        "partition.");
    Expect(Source::kWatchdog, "armed with 30 s");
    Expect(Source::kLed, "all error");
    Expect(Source::kInit, "keldra_monitor has ended: exit status 0");
    EXPECT_EQ(LogLines("/usr/sbin/keldra -cp 23"), 0);
    EXPECT_TRUE(terminal_->Processes("keldra").empty());
    EXPECT_EQ(terminal_->Watchdog().BiteSeconds(), 30U);
}

TEST_F(EndToEndRebootTest, TheFourthStrikeIsOneTooManyByDefault) {
    PowerOn();
    RefuseToStart(terminal_.get());
    StartMonitor({});
    ExpectLog("Strike 4! Keldra has not responded for 4 seconds");
    ExpectLog("Maximum consecutive failure threshold exceeded");
    Expect(Source::kInit, "keldra_monitor has ended: exit status 0");
    // The backup file's name begins with the primary file's.
    EXPECT_EQ(LogLines(std::string("-cfg ") + kPrimaryOptions), 3);
    EXPECT_EQ(LogLines(std::string("-cfg ") + kBackupOptions), 1);
}
