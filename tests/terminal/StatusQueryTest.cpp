#include <csignal>

#include "tests/terminal/EndToEnd.h"

class EndToEndStatusQueryTest : public EndToEnd {};

TEST_F(EndToEndStatusQueryTest, RequestsDuringTheStartDoNotEndTheDaemon) {
    PowerOn();
    // A signal while the program is loaded would end it. So the requests begin later, when it
    // searches the process table for another instance. A long table and a low priority give
    // them time. They go to the script's process group, which has no other member.
    (void)terminal_->Run("for i in $(seq 500); do sleep 1000 & done");
    const CommandResult start = RunMonitorInShell(
        "trap : USR1\n"
        "nice \"$@\" &\n"
        "until [ /proc/$!/fd/3 -ef /proc ] || [ ! -e /proc/$!/exe ]; do :; done\n"
        "while [ -e /proc/$!/exe ]; do kill -USR1 0; done\n"
        "wait $!",
        "-t 1");
    ASSERT_EQ(start.status, 0);
    const pid_t daemon = Only("keldra_monitor");
    do {
        ASSERT_TRUE(terminal_->Signal(daemon, SIGUSR1));
    } while (LogLines("Keldra is not running!") == 0);
    EXPECT_EQ(Only("keldra_monitor"), daemon);
}

TEST_F(EndToEndStatusQueryTest, RequestsAreHeldWhileACheckWorks) {
    PowerOn();
    RefuseToStart(terminal_.get());
    (void)terminal_->Run("for i in $(seq 500); do sleep 1000 & done");
    StartMonitor();
    // Each check looks through the long table; sooner or later one is seen at it, with the
    // signals 2, 3, 10, 15 and 20 blocked.
    const std::string process = "/proc/" + std::to_string(Only("keldra_monitor"));
    const CommandResult seen = terminal_->Run("until grep -q 'SigBlk:.00*84206' " + process +
                                              "/status; do [ -e " + process + " ]; done");
    EXPECT_EQ(seen.status, 0);
}

TEST_F(EndToEndStatusQueryTest, InterruptEndsTheQueryAlone) {
    StartHealthy();
    const pid_t daemon = Only("keldra_monitor");
    ASSERT_TRUE(terminal_->Signal(daemon, SIGSTOP));
    (void)RunMonitorInShell("{ \"$@\" 2>/tmp/answer; echo $? >/tmp/status; } &", "-i");
    // Once the daemon has a pending request, the query has installed its handlers.
    const std::string status = terminal_->Path("/proc/" + std::to_string(daemon) + "/status");
    ASSERT_TRUE(Becomes(
        [&] { return ReadFile(status).find("ShdPnd:\t0000000000000200") != std::string::npos; }));
    for (const Process& process : terminal_->Processes("keldra_monitor")) {
        if (process.pid != daemon) {
            ASSERT_TRUE(terminal_->Signal(process.pid, SIGUSR1));  // as from another query
            ASSERT_TRUE(terminal_->Signal(process.pid, SIGINT));
        }
    }
    EXPECT_TRUE(Becomes([&] { return ReadFile(terminal_->Path("/tmp/status")) == "1\n"; }));
    EXPECT_EQ(ReadFile(terminal_->Path("/tmp/answer")), "\n");
    EXPECT_EQ(Only("keldra_monitor"), daemon);
}
