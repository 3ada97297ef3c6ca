#include "tests/terminal/EndToEnd.h"

using namespace Simulator;

class EndToEndRecoveryTest : public EndToEnd {};

TEST_F(EndToEndRecoveryTest, FaultsOfARunningKeldraAreMendedByARestart) {
    // The fault, its sign, and how many run after the restart: one that ignores SIGQUIT stays.
    const std::tuple<const char*, const char*, size_t> cases[] = {
        {"missing", "Read: Failed to open the heartbeat file", 1},
        {"ignore", "Keldra missed a heartbeat", 2},
    };
    StartHealthy();
    for (const auto& [fault, sign, running] : cases) {
        SCOPED_TRACE(sign);
        terminal_->Mark();
        const pid_t before = Only("keldra");
        ASSERT_EQ(Cause(terminal_.get(), fault), "");
        ExpectLog(sign);
        ExpectLog("Keldra started responding again after ");
        const auto keldras = terminal_->Processes("keldra");
        ASSERT_EQ(keldras.size(), running);
        EXPECT_EQ(keldras[0].pid == before, running == 2);
    }
}

TEST_F(EndToEndRecoveryTest, KeldraThatCannotBeExecutedIsReported) {
    PowerOn();
    ASSERT_EQ(terminal_->RunScript(std::string("chmod 0 ") + kKeldraProgram).status, 0);
    StartMonitor();
    ExpectLog("Keldra failed to start, status: 65");
    ExpectLog("Starting the SSH daemon because it was not detected");
}
