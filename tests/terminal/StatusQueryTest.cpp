#include <fcntl.h>
#include <sys/stat.h>

#include <csignal>

#include "tests/terminal/EndToEnd.h"

class EndToEndStatusQueryTest : public EndToEnd {};

TEST_F(EndToEndStatusQueryTest, PrintsTheNewReportAndNothingOfAnOlderOne) {
    PowerOn();
    WriteInside(*terminal_, kStatusFile, std::string(100000, 'x'));
    StartHealthy();
    const CommandResult query = Query();
    EXPECT_EQ(query.status, 0);
    EXPECT_EQ(query.output, ReadFile(terminal_->Path(kStatusFile)));
    EXPECT_EQ(query.output.find("xx"), std::string::npos);
    EXPECT_EQ(query.output.find("Parameters\n"), 0U) << query.output;
}

TEST_F(EndToEndStatusQueryTest, RequestsDuringTheStartDoNotEndTheDaemon) {
    PowerOn();
    // Requests have to begin after the program is loaded, which nothing could survive: when it
    // reads the process table in search of another instance. A long table and a low priority
    // give them time. They go to the script's process group, which nobody else is in.
    (void)terminal_->Run({"/bin/sh", "-c", "for i in $(seq 500); do sleep 1000 & done"});
    const CommandResult start = RunMonitorInShell(
        "trap : USR1\n"
        "nice \"$@\" &\n"
        "until [ /proc/$!/fd/3 -ef /proc ] || [ ! -e /proc/$!/exe ]; do :; done\n"
        "while [ -e /proc/$!/exe ]; do kill -USR1 0; done\n"
        "wait $!",
        {"-t", "1"});
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
    (void)terminal_->Run({"/bin/sh", "-c", "for i in $(seq 500); do sleep 1000 & done"});
    StartMonitor();
    // Each check looks through the long table; sooner or later one is seen at it, with the
    // signals 2, 3, 10, 15 and 20 blocked.
    const CommandResult seen = terminal_->Run(
        {"/bin/sh", "-c",
         "until grep -q 'SigBlk:.00*84206' /proc/$1/status; do [ -e /proc/$1 ]; done", "sh",
         std::to_string(Only("keldra_monitor"))});
    EXPECT_EQ(seen.status, 0);
}

TEST_F(EndToEndStatusQueryTest, WhatLiesInTheStatusFilesPlaceIsReportedAndLeftAlone) {
    // How it comes there, with the file's path in $1, and why it is refused.
    const std::pair<const char*, const char*> cases[] = {
        {"mkdir $1", "Is a directory"},
        {"mkfifo $1", "No such device or address"},
        {"mkfifo $1; exec 3<>$1; sleep 1000 &", "File exists"},
        {"echo precious >/tmp/kept; ln -s /tmp/kept $1", "Too many levels of symbolic links"},
        {"rm -f $1; echo precious >/var/run/quenda/kept; ln /var/run/quenda/kept $1",
         "File exists"},
    };
    StartHealthy();
    const std::string descriptors = "/proc/" + std::to_string(Only("keldra_monitor")) + "/fd";
    const std::string before = terminal_->Run({"/bin/ls", descriptors}).output;
    for (const auto& [command, reason] : cases) {
        (void)terminal_->Run({"/bin/sh", "-c", "rm -rf $1", "sh", kStatusFile});
        (void)terminal_->Run({"/bin/sh", "-c", command, "sh", kStatusFile});
        ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), SIGUSR1));
        ExpectLog(std::string("Failed to open the status file ") + kStatusFile +
                  " for writing: " + reason);
        terminal_->Mark();
        Expect(Source::kWatchdog, "armed with 300 s");
    }
    EXPECT_EQ(terminal_->Run({"/bin/ls", descriptors}).output, before);
    EXPECT_EQ(ReadFile(terminal_->Path("/tmp/kept")), "precious\n");
    EXPECT_EQ(ReadFile(terminal_->Path("/var/run/quenda/kept")), "precious\n");
}

TEST_F(EndToEndStatusQueryTest, QueryTellsWhatIsNoReport) {
    // What comes between, and the end of what the query says.
    const std::pair<const char*, const char*> cases[] = {
        {"prlimit --pid $2 --fsize=600:unlimited", " is incomplete: is its disk full?\n"},
        {"prlimit --pid $2 --fsize=0:unlimited", " is empty: is its disk full?\n"},
        {"rm $1; mkfifo $1; (sleep 1; touch $1) &", " for reading: File exists\n"},
    };
    StartHealthy();
    const std::string pid = std::to_string(Only("keldra_monitor"));
    for (const auto& [command, end] : cases) {
        (void)terminal_->Run({"/bin/sh", "-c", command, "sh", kStatusFile, pid});
        const std::string output = Query().output;
        EXPECT_NE(output.find(std::string(kStatusFile) + end), std::string::npos) << output;
    }
}

TEST_F(EndToEndStatusQueryTest, ReportIsNewerWhenItsNanosecondsAre) {
    StartHealthy();
    // The clock was set back since; each part of the time is compared on its own.
    WriteInside(*terminal_, kStatusFile, "old\n");
    const timespec later[2] = {{2177452800, 0}, {2177452800, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, terminal_->Path(kStatusFile).c_str(), later, 0), 0);
    EXPECT_EQ(Query().output.find("Parameters\n"), 0U);
}

TEST_F(EndToEndStatusQueryTest, InterruptEndsTheQueryAlone) {
    StartHealthy();
    const pid_t daemon = Only("keldra_monitor");
    ASSERT_TRUE(terminal_->Signal(daemon, SIGSTOP));
    (void)RunMonitorInShell("{ \"$@\" 2>/tmp/answer; echo $? >/tmp/status; } &", {"-i"});
    // Its request tells that the query is past its start.
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

TEST_F(EndToEndStatusQueryTest, NobodyToAskAndNoAnswerAreTold) {
    PowerOn();
    EXPECT_EQ(Query().output, "No other Keldra Monitor instance is running to query\n");
    StartHealthy();
    const pid_t daemon = Only("keldra_monitor");
    (void)Query();  // an earlier report is no answer
    ASSERT_TRUE(terminal_->Signal(daemon, SIGSTOP));
    const double start = terminal_->Seconds();
    const CommandResult query = Query();
    EXPECT_GE(terminal_->Seconds() - start, 10);
    EXPECT_EQ(query.status, 0);
    EXPECT_EQ(query.output, "TIMEOUT! Keldra Monitor " + std::to_string(daemon) +
                                " did not update the status file " + kStatusFile +
                                " within 10 seconds\n");
}
