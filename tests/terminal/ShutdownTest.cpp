#include <algorithm>
#include <csignal>

#include "tests/terminal/EndToEnd.h"

struct EndToEndShutdownTest : EndToEnd {
    // The daemon shuts down in response to the signal; its last action is to arm the watchdog.
    void ExpectGracefulEnd(int signal) {
        const std::string text = "Keldra Monitor is shutting down gracefully in response to signal";
        ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), signal));
        ExpectLog(text + " " + std::to_string(signal));
        Expect(Source::kInit, "keldra_monitor has ended: exit status 0");
        const auto& events = terminal_->Events();
        const auto log = std::find_if(events.begin(), events.end(), [&](const Event& event) {
            return event.text.find(text) == 0;
        });
        EXPECT_TRUE(std::any_of(log, events.end(), [](const Event& event) {
            return event.text == "armed with 300 s";
        }));
    }
};

TEST_F(EndToEndShutdownTest, EveryTerminatingSignalEndsTheDaemonWithTheWatchdogLeftArmed) {
    for (const int signal : {SIGTERM, SIGQUIT, SIGTSTP, SIGINT}) {
        SCOPED_TRACE(signal);
        PowerOn();
        StartHealthy();
        ExpectGracefulEnd(signal);
        EXPECT_EQ(terminal_->Processes("keldra").size(), 1U);
    }
}

TEST_F(EndToEndShutdownTest, HangUpEndsOnlyADaemonInDebugMode) {
    StartHealthy();
    ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), SIGHUP));
    terminal_->Mark();
    Expect(Source::kWatchdog, "armed with 300 s");
    ExpectGracefulEnd(SIGTERM);

    StartInDebugMode("1");
    ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), SIGHUP));
    Expect(Source::kInit, "keldra_monitor has ended: signal 1");
}

TEST_F(EndToEndShutdownTest, WaitForAProgramThatNeverEndsLeavesTheDaemonOpenToSignals) {
    for (const char* program : {"/usr/sbin/led_ctl.sh", kKeldraProgram, "/usr/sbin/service"}) {
        SCOPED_TRACE(program);
        PowerOn();
        const std::string script = "printf '#!/bin/sh\nexec sleep 1000\n' >";
        ASSERT_EQ(terminal_->Run(script + program).status, 0);
        StartMonitor();
        (void)Only("sleep");
        const std::string report = Query().output;
        EXPECT_NE(report.find("Keldra State:   Keldra_Not_Running\n"), std::string::npos) << report;
        // The next check is overdue as long as this one lasts.
        EXPECT_NE(report.find("Next Heartbeat Check:     0 (seconds)\n"), std::string::npos);
        ExpectGracefulEnd(SIGTERM);
    }
}
