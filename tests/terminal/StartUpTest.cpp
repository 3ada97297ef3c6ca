#include <sys/stat.h>
#include <syslog.h>

#include <csignal>
#include <filesystem>

#include "tests/terminal/EndToEnd.h"

class EndToEndStartUpTest : public EndToEnd {};

TEST_F(EndToEndStartUpTest, RunsDetachedAndLogsNotices) {
    StartHealthy();
    (void)Only("keldra_monitor");
    EXPECT_EQ(terminal_->Processes("keldra_monitor")[0].parent, 1);
    for (const Event& event : terminal_->Events()) {
        if (event.source == Source::kLog) {
            EXPECT_EQ(event.priority, LOG_DAEMON | LOG_NOTICE) << event.text;
        }
    }
}

TEST_F(EndToEndStartUpTest, OfTwoStartedAtTheSameMomentOneRemains) {
    PowerOn();
    for (int i = 0; i < 5 && !HasFailure(); ++i) {
        (void)RunMonitorInShell("\"$@\" & \"$@\" & wait", "-t 1");
        ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), SIGKILL));
        EXPECT_TRUE(Becomes([&] { return terminal_->Processes("keldra_monitor").empty(); }));
    }
}

TEST_F(EndToEndStartUpTest, CarelessStarterChangesNothing) {
    PowerOn();
    (void)RunMonitorInShell(
        "umask 077; trap '' CHLD; exec env --block-signal=USR1 --block-signal=TERM \"$@\" "
        "0<&- 1>&- 2>&- &",
        "-d -t 1");
    ExpectLog("Keldra started responding again after ");
    EXPECT_EQ(LogLines("Failed to wait"), 0);
    const pid_t daemon = Only("keldra_monitor");
    for (const char* stream : {"0", "1", "2"}) {
        const std::string file = "/proc/" + std::to_string(daemon) + "/fd/" + stream;
        EXPECT_EQ(std::filesystem::read_symlink(terminal_->Path(file)), "/dev/null") << stream;
    }
    for (const Event& event : terminal_->Events()) {
        if (event.source == Source::kWatchdog) {
            EXPECT_EQ(event.text, "armed with 300 s");  // no trace ended in a control file
        }
    }
    EXPECT_EQ(Query().output.find("Parameters\n"), 0U);
    struct stat status {};
    ASSERT_EQ(stat(terminal_->Path(kStatusFile).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0644U);
    ASSERT_TRUE(terminal_->Signal(daemon, SIGTERM));
    Expect(Source::kInit, "keldra_monitor has ended: exit status 0");
}

TEST_F(EndToEndStartUpTest, EmptyProgramIsReportedAsNoDaemon) {
    PowerOn();
    ASSERT_EQ(terminal_->Run(std::string(">") + kMonitorProgram).status, 0);
    EXPECT_EQ(terminal_->StartMonitor("").output, "no process is called keldra_monitor");
}
