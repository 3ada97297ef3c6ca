#include <sys/stat.h>

#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

class EndToEndRecoveryTest : public EndToEnd {};

TEST_F(EndToEndRecoveryTest, FaultsOfARunningKeldraAreMendedByARestart) {
    const struct {
        KeldraFault fault;
        const char* sign;
        size_t keldras;  // after the restart; one that ignores SIGQUIT stays beside its successor
    } cases[] = {
        {KeldraFault::kMissingFile, "Read: Failed to open the heartbeat file", 1},
        {KeldraFault::kIgnoreQuit, "Keldra missed a heartbeat", 2},
    };
    StartHealthy();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sign);
        terminal_->Mark();
        const pid_t before = Only("keldra");
        ASSERT_EQ(Cause(terminal_.get(), c.fault), "");
        ExpectLog(c.sign);
        ExpectLog("Keldra started responding again after ");
        const auto keldras = terminal_->Processes("keldra");
        ASSERT_EQ(keldras.size(), c.keldras);
        EXPECT_EQ(keldras[0].pid == before, c.keldras == 2);
    }
}

TEST_F(EndToEndRecoveryTest, EveryWayOfNotStartingHasItsMessage) {
    const std::string killed = files_.Write("killed", "#!/bin/sh\nkill -9 $$\n");
    const std::string plain = files_.Write("plain", "not a program\n");
    const struct {
        std::string program;
        mode_t mode;  // 0: the program is not there
        std::string message;
    } cases[] = {
        {killed, 0755, " did not exit normally!"},
        {plain, 0644, "Keldra failed to start, status: 65"},
        {plain, 0, "Failed to start Keldra because /usr/sbin/keldra does not exist"},
    };
    for (const auto& c : cases) {
        TerminalOptions options;
        options.keldraProgram = c.program;
        PowerOn(options);
        const std::string inside = terminal_->Path(kKeldraProgram);
        ASSERT_EQ(c.mode != 0 ? chmod(inside.c_str(), c.mode) : remove(inside.c_str()), 0);
        StartMonitor();
        ExpectLog(c.message);
        ExpectLog("Starting the SSH daemon because it was not detected");
    }
}

TEST_F(EndToEndRecoveryTest, WhatFailsIsReportedAndTriedAgainUntilItIsRepaired) {
    PowerOn();
    for (const char* order : {kKeldraRefuses, kServiceFails, kLedFails}) {
        WriteInside(*terminal_, order, "255\n");
    }
    StartMonitor();
    for (int check = 0; check < 2; ++check) {
        ExpectLog("Failed to set the LEDs on the terminal: ");
        ExpectLog("Keldra failed to start, status: 255");
        ExpectLog("service: cannot start sshd\nShell command exited with code 255");
    }
    Repair(terminal_.get());
    Expect(Source::kSshd, "is up");
    ExpectLog("Keldra started responding again after ");
    Expect(Source::kLed, "all error");
}
