#include <sys/stat.h>

#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

class EndToEndStartFailureTest : public EndToEnd {};

TEST_F(EndToEndStartFailureTest, KeldraThatRefusesToStartIsTriedAgainUntilItDoes) {
    PowerOn();
    WriteInside(*terminal_, kKeldraRefuses, "3\n");
    StartMonitor();
    ExpectLog("Keldra failed to start, status: 3");
    ExpectLog("Strike 2! Keldra has not responded for 2 seconds");
    ExpectLog("Keldra failed to start, status: 3");
    Repair(terminal_.get());
    ExpectLog("Keldra started responding again after ");
}

TEST_F(EndToEndStartFailureTest, EveryWayOfNotStartingHasItsMessage) {
    const std::string killed = files_.Write("killed", "#!/bin/sh\nkill -9 $$\n");
    const std::string plain = files_.Write("plain", "not a program\n");
    const std::string brief = files_.Write("brief", "#!/bin/sh\nexit 255\n");
    const struct {
        std::string program;
        mode_t mode;  // 0: the program is not there
        std::string message;
    } cases[] = {
        {killed, 0755, " did not exit normally!"},
        {plain, 0644, "Keldra failed to start, status: 65"},
        {brief, 0755, "Keldra failed to start, status: 255"},
        {brief, 0, "Failed to start Keldra because /usr/sbin/keldra does not exist"},
    };
    for (const auto& c : cases) {
        TerminalOptions options;
        options.keldraProgram = c.program;
        PowerOn(options);
        const std::string inside = terminal_->Path(kKeldraProgram);
        ASSERT_EQ(c.mode != 0 ? chmod(inside.c_str(), c.mode) : remove(inside.c_str()), 0);
        StartMonitor();
        ExpectLog(c.message);
        // The daemon lives on, sshd included.
        ExpectLog("Starting the SSH daemon because it was not detected");
        ExpectLog("Strike 2!");
    }
}

TEST_F(EndToEndStartFailureTest, FailingServiceScriptIsReportedWithItsOutputAndStatus) {
    PowerOn();
    WriteInside(*terminal_, kServiceFails, "7\n");
    StartMonitor();
    ExpectLog("Starting the SSH daemon because it was not detected");
    ExpectLog(
        "Failed to start the SSH service: service: cannot start sshd\n"
        "Shell command exited with code 7");
    Repair(terminal_.get());
    Expect(Source::kSshd, "is up");
}

TEST_F(EndToEndStartFailureTest, FailingLedScriptIsReportedAndKeldraStartedAllTheSame) {
    PowerOn();
    WriteInside(*terminal_, kLedFails, "1\n");
    StartMonitor();
    const auto failure = terminal_->Await(Source::kLog, "Failed to set the LEDs", 60);
    ASSERT_TRUE(failure.has_value());
    // There is never a reason behind the colon.
    EXPECT_EQ(failure->text, "Failed to set the LEDs on the terminal: ");
    ExpectLog("/usr/sbin/keldra -cp 23");
    Expect(Source::kKeldra, "is up");
}
