#include <syslog.h>

#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

class EndToEndRecoveryTest : public EndToEnd {};

TEST_F(EndToEndRecoveryTest, EveryFaultIsNamedAndMendedByARestart) {
    const struct {
        KeldraFault fault;
        const char* sign;
        bool quits;  // the daemon has to end the old Keldra first
    } cases[] = {
        {KeldraFault::kHang, "Keldra missed a heartbeat (last received: ", true},
        {KeldraFault::kError, "Keldra is in error state", true},
        {KeldraFault::kCrash, "Keldra is not running!", false},
        {KeldraFault::kShortFile,
         "HeartbeatReadTimer: Read: Failed to read from the heartbeat file", true},
        {KeldraFault::kMissingFile,
         "HeartbeatReadTimer: Read: Failed to open the heartbeat file "
         "/var/run/quenda/keldra.heartbeat for reading: No such file or directory",
         true},
    };
    StartHealthy();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sign);
        terminal_->Mark();
        const pid_t before = Only("keldra");
        ASSERT_EQ(Cause(terminal_.get(), c.fault), "");
        ExpectLog(c.sign);
        ExpectLog("Strike 1! Keldra has not responded for 1 seconds");
        ExpectLog("/usr/sbin/keldra -cp 23 -cfg /sysopt/config/sat_router/keldra.json");
        ExpectLog("Keldra started responding again after ");
        if (c.quits) {
            Expect(Source::kKeldra, "ends on SIGQUIT");
        }
        EXPECT_NE(Only("keldra"), before);
    }
}

TEST_F(EndToEndRecoveryTest, UnreadableHeartbeatFileCountsAsErrorState) {
    StartHealthy();
    terminal_->Mark();
    ASSERT_EQ(Cause(terminal_.get(), KeldraFault::kMissingFile), "");
    ExpectLog("Failed to open the heartbeat file");
    const auto next = terminal_->Await(Source::kLog, "", 60);
    ASSERT_TRUE(next.has_value());
    EXPECT_EQ(next->text, "Keldra is in error state");
}

TEST_F(EndToEndRecoveryTest, KeldraThatIgnoresSigquitGetsASuccessorBesideIt) {
    StartHealthy();
    const pid_t stubborn = Only("keldra");
    ASSERT_EQ(Cause(terminal_.get(), KeldraFault::kIgnoreQuit), "");
    ExpectLog("Keldra missed a heartbeat");
    ExpectLog("Keldra started responding again after ");
    const auto both = terminal_->Processes("keldra");
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[0].pid, stubborn);
}

TEST_F(EndToEndRecoveryTest, AfterTwoStrikesTheBackupOptionsServeUntilTheRecovery) {
    PowerOn();
    DamagePrimaryOptions(terminal_.get());
    StartHealthy();
    const std::string primary = std::string("-cfg ") + kPrimaryOptions;
    const std::string backup = std::string("-cfg ") + kBackupOptions;
    EXPECT_EQ(LogLines("Keldra failed to start, status: 3"), 2);
    EXPECT_EQ(LogLines(backup), 1);
    Repair(terminal_.get());
    terminal_->Mark();
    ASSERT_EQ(Cause(terminal_.get(), KeldraFault::kCrash), "");
    ExpectLog(primary);
    ExpectLog("Keldra started responding again after 2 seconds");
    EXPECT_EQ(LogLines(backup), 1);
}

TEST_F(EndToEndRecoveryTest, DeadSshdIsStartedAgain) {
    StartHealthy();
    const pid_t before = Only("sshd");
    terminal_->Mark();
    ASSERT_EQ(KillSshd(terminal_.get()), "");
    ExpectLog("Starting the SSH daemon because it was not detected");
    Expect(Source::kSshd, "is up");
    EXPECT_NE(Only("sshd"), before);
}

TEST_F(EndToEndRecoveryTest, BigEndianCountsServeAsWell) {
    TerminalOptions options;
    options.bigEndianHeartbeat = true;
    PowerOn(options);
    StartHealthy();
    // Whole, in either order: the daemon takes a changed count for a heartbeat.
    EXPECT_EQ(ReadFile(terminal_->Path(kHeartbeatFile)).size(), 4U);
}
