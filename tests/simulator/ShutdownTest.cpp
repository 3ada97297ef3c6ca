#include <csignal>

#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

class EndToEndShutdownTest : public EndToEnd {
protected:
    // Whether the watchdog was armed after the first log line that contains the text.
    bool ArmedAfter(const std::string& text) {
        bool after = false;
        for (const Event& event : terminal_->Events()) {
            after = after || event.text.find(text) != std::string::npos;
            if (after && event.source == Source::kWatchdog && event.text == "armed with 300 s") {
                return true;
            }
        }
        return false;
    }
};

TEST_F(EndToEndShutdownTest, EveryTerminatingSignalEndsTheDaemonWithTheWatchdogLeftArmed) {
    for (const int signal : {SIGTERM, SIGQUIT, SIGTSTP, SIGINT}) {
        SCOPED_TRACE(signal);
        PowerOn();
        StartHealthy();
        terminal_->Mark();
        ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), signal));
        ExpectLog("Keldra Monitor is shutting down gracefully in response to signal " +
                  std::to_string(signal));
        Expect(Source::kInit, "keldra_monitor has ended: exit status 0");
        EXPECT_TRUE(ArmedAfter("Keldra Monitor is shutting down gracefully"));
        EXPECT_EQ(terminal_->Processes("keldra").size(), 1U);
    }
}

TEST_F(EndToEndShutdownTest, InDebugModeAnInterruptPrintsTheReport) {
    PowerOn();
    StartInDebugMode();
    ExpectLog("Defaulting to Keldra's primary options file");
    ExpectLog("Keldra started responding again after ");
    ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), SIGINT));
    Expect(Source::kInit, "keldra_monitor has ended: exit status 0");
    const std::string output = ReadFile(terminal_->Path("/tmp/debug.log"));
    EXPECT_NE(output.find("Keldra is up and okay\n"), std::string::npos) << output;
    EXPECT_NE(output.find("\nParameters\n==========\n"), std::string::npos) << output;
}

TEST_F(EndToEndShutdownTest, SuccessorTakesOverTheRunningKeldra) {
    StartHealthy();
    const pid_t keldra = Only("keldra");
    terminal_->Mark();
    ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), SIGTERM));
    Expect(Source::kInit, "keldra_monitor has ended: exit status 0");
    terminal_->Mark();
    StartMonitor();
    for (int check = 0; check < 4; ++check) {
        Expect(Source::kWatchdog, "armed with 300 s");
    }
    EXPECT_EQ(Only("keldra"), keldra);
    EXPECT_EQ(LogLines("Keldra is not running!"), 1);
}
