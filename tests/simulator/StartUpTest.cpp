#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <filesystem>

#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

class EndToEndStartUpTest : public EndToEnd {
protected:
    void Remove(const std::string& path) {
        ASSERT_EQ(unlink(terminal_->Path(path).c_str()), 0) << path;
    }
};

TEST_F(EndToEndStartUpTest, ColdStartFindsKeldraAbsentAndBringsEverythingUp) {
    StartMonitor();
    ExpectLog("Keldra is not running!");
    ExpectLog("Strike 1! Keldra has not responded for 1 seconds");
    ExpectLog("/usr/sbin/keldra -cp 23 -cfg /sysopt/config/sat_router/keldra.json");
    ExpectLog("Starting the SSH daemon because it was not detected");
    ExpectLog("Keldra started responding again after 2 seconds");
    Expect(Source::kLed, "all error");
    EXPECT_EQ(terminal_->Watchdog().BiteSeconds(), 300U);
    for (const Event& event : terminal_->Events()) {
        if (event.source == Source::kLog) {
            EXPECT_EQ(event.priority, LOG_DAEMON | LOG_NOTICE) << event.text;
        }
    }
    // A daemon of its own session, adopted by the first process.
    const auto monitor = terminal_->Processes("keldra_monitor");
    ASSERT_EQ(monitor.size(), 1U);
    EXPECT_EQ(monitor[0].parent, 1);
    EXPECT_EQ(terminal_->Processes("sshd").size(), 1U);
}

TEST_F(EndToEndStartUpTest, KeldraGetsTheOptionsFileThatIsThere) {
    const struct {
        std::vector<std::string> missing;
        const char* message;
        const char* file;
    } cases[] = {
        {{kPrimaryOptions},
         "Falling back to Keldra's backup options file because the primary options file is missing",
         kBackupOptions},
        {{kPrimaryOptions, kBackupOptions},
         "Falling back to Keldra's factory options file because both the primary and backup "
         "options files are missing",
         kFactoryOptions},
    };
    for (const auto& c : cases) {
        PowerOn();
        for (const auto& path : c.missing) {
            Remove(path);
        }
        StartMonitor();
        ExpectLog(c.message);
        ExpectLog(std::string("/usr/sbin/keldra -cp 23 -cfg ") + c.file);
        Expect(Source::kKeldra, std::string("is up, options ") + c.file);
    }
}

TEST_F(EndToEndStartUpTest, WithoutAnyOptionsFileTheDaemonGivesUp) {
    PowerOn();
    for (const char* path : {kPrimaryOptions, kBackupOptions, kFactoryOptions}) {
        Remove(path);
    }
    StartMonitor();
    ExpectLog(
        "TERMINATING IMMEDIATELY because the primary, backup, and factory Keldra options files "
        "are missing");
    Expect(Source::kInit, "keldra_monitor has ended: exit status 1");
    EXPECT_TRUE(terminal_->Watchdog().IsArmed());
}

TEST_F(EndToEndStartUpTest, SecondInstanceIsRefusedAndTheFirstGoesOn) {
    StartHealthy();
    const pid_t first = Only("keldra_monitor");
    const CommandResult second = terminal_->Run(terminal_->MonitorCommand({"-t", "1"}));
    ASSERT_TRUE(WIFEXITED(second.status));
    EXPECT_EQ(WEXITSTATUS(second.status), 1);
    ExpectLog("Keldra Monitor refuses to start while another keldra_monitor is running...");
    EXPECT_EQ(Only("keldra_monitor"), first);
}

TEST_F(EndToEndStartUpTest, MissingWorkingDirectoryIsReportedAndSurvived) {
    PowerOn();
    ASSERT_TRUE(std::filesystem::remove(terminal_->Path("/var/run/quenda")));
    StartMonitor({"-X", "50", "-h", "/tmp/keldra.heartbeat"});
    ExpectLog("Failed to chdir to /var/run/quenda: No such file or directory");
    ExpectLog("Please ensure that keldra_monitor is correctly installed");
    ExpectLog("Keldra is not running!");
}

TEST_F(EndToEndStartUpTest, MissingWatchdogFileIsReportedAtEveryArming) {
    PowerOn();
    Remove(std::string(kWatchdogFiles) + "control-all");
    StartMonitor();
    ExpectLog("wdStart (238) : WD_FILE_NOT_FOUND");
    ExpectLog("Keldra is not running!");
    ExpectLog("wdStart (238) : WD_FILE_NOT_FOUND");
    ExpectLog("Keldra started responding again after 2 seconds");
    EXPECT_FALSE(terminal_->Watchdog().IsArmed());
}

TEST_F(EndToEndStartUpTest, OnlyTheLowestCounterIsWrittenInFull) {
    StartHealthy();
    const struct {
        const char* file;
        const char* content;
    } cases[] = {{"intial-cnt0", "0x60"}, {"intial-cnt1", "0"},   {"intial-cnt2", "0"},
                 {"intial-cnt3", "0"},    {"control-reset", "0"}, {"control-all", "00"},
                 {"control-en", ""}};
    // The stand-in files keep what one opening wrote; each arming writes it anew.
    for (const auto& c : cases) {
        EXPECT_EQ(ReadFile(terminal_->Path(std::string(kWatchdogFiles) + c.file)), c.content)
            << c.file;
    }
}

TEST_F(EndToEndStartUpTest, HeartbeatTimeoutsAtTheLimitsAreReported) {
    const struct {
        const char* timeout;
        const char* message;
        bool expected;
    } cases[] = {
        {"0", "HeartbeatReadTimer: Reload: Heartbeat timeout must be a positive integer: 0", true},
        {"0", "Failed to set the HeartbeatReadTimer options", true},
        {"299", "but the watchdog will bite after", false},
        {"300",
         "The heartbeat timeout is 300 seconds, but the watchdog will bite after 300 seconds. This "
         "will most likely cause problems, but continuing anyway.",
         true},
    };
    for (const auto& c : cases) {
        PowerOn();
        StartInDebugMode({"-t", c.timeout});
        ExpectLog("Starting the main event loop");
        EXPECT_EQ(LogLines(c.message), c.expected ? 1 : 0) << c.timeout;
    }
}

TEST_F(EndToEndStartUpTest, DaemonRunsUnderAWrapperThatLoadsTheRedirectItself) {
    TerminalOptions options;
    options.monitorWrapper = std::string("/usr/bin/env LD_PRELOAD=") + kRedirectLibrary;
    PowerOn(options);
    StartMonitor();
    Expect(Source::kWatchdog, "armed with 300 s");
}
