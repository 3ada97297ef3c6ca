#include <csignal>

#include "tests/simulator/EndToEnd.h"

using namespace Simulator;

class EndToEndStatusQueryTest : public EndToEnd {
protected:
    CommandResult Query() { return terminal_->Run(terminal_->MonitorCommand({"-i"})); }
};

TEST_F(EndToEndStatusQueryTest, PrintsTheStatusFileByteForByte) {
    StartHealthy();
    const CommandResult query = Query();
    EXPECT_EQ(query.status, 0);
    EXPECT_EQ(query.output, ReadFile(terminal_->Path(kStatusFile)));
    const std::string expected[] = {
        "Parameters\n"
        "==========\n"
        "Keldra Monitor Process Name: keldra_monitor\n"
        "Keldra Process Name:         keldra\n"
        "SSH Daemon Process Name:     sshd\n"
        "Service Script:              /usr/sbin/service\n"
        "LED Control Script:          /usr/sbin/led_ctl.sh\n"
        "Max Strikes:                 50\n"
        "\n"
        "Statistics\n"
        "==========\n"
        "keldra_state_unknown:       0\n"
        "keldra_not_running:         1\n",
        "State\n"
        "=====\n"
        "Keldra State:   Keldra_Up_And_Okay\n"
        "Options Type:   Normal_Options\n"
        "Strikes:        0\n"
        "Keldra PID:     " +
            std::to_string(Only("keldra")) +
            "\n"
            "SSH Daemon PID: " +
            std::to_string(Only("sshd")) +
            "\n"
            "\n"
            "Heartbeat Timer\n"
            "===============\n"
            "Heartbeat File:           /var/run/quenda/keldra.heartbeat\n"
            "Heartbeat Timeout:        1 (seconds)\n",
    };
    for (const auto& part : expected) {
        EXPECT_NE(query.output.find(part), std::string::npos) << part << query.output;
    }
}

TEST_F(EndToEndStatusQueryTest, WithoutADaemonThereIsNobodyToAsk) {
    PowerOn();
    const CommandResult query = Query();
    EXPECT_EQ(query.status, 0);
    EXPECT_EQ(query.output, "No other Keldra Monitor instance is running to query\n");
}

TEST_F(EndToEndStatusQueryTest, StoppedDaemonIsGivenUpAfterTenSeconds) {
    StartHealthy();
    const pid_t daemon = Only("keldra_monitor");
    ASSERT_TRUE(terminal_->Signal(daemon, SIGSTOP));
    const CommandResult query = Query();
    EXPECT_EQ(query.status, 0);
    EXPECT_EQ(query.output, "TIMEOUT! Keldra Monitor " + std::to_string(daemon) +
                                " did not update the status file " + kStatusFile +
                                " within 10 seconds\n");
}
