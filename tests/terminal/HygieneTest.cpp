#include <csignal>

#include "tests/terminal/EndToEnd.h"

using namespace Simulator;

namespace {

constexpr uint64_t Bit(int signal) {
    return uint64_t{1} << (signal - 1);
}

constexpr uint64_t kDaemonsSignals =
    Bit(SIGINT) | Bit(SIGQUIT) | Bit(SIGUSR1) | Bit(SIGTERM) | Bit(SIGTSTP);

}  // namespace

struct EndToEndHygieneTest : EndToEnd {
    static std::string Proc(pid_t pid) { return "/proc/" + std::to_string(pid); }
    // Which of the daemon's signals the process has in this line of its status.
    uint64_t Signals(pid_t pid, const std::string& line) {
        const std::string status = ReadFile(terminal_->Path(Proc(pid) + "/status"));
        return std::stoull(status.substr(status.find(line) + line.size()), nullptr, 16) &
               kDaemonsSignals;
    }
};

TEST_F(EndToEndHygieneTest, WhatTheDaemonStartsHasNothingOfItAndIsNotItsChild) {
    StartHealthy();
    const pid_t daemon = Only("keldra_monitor");
    EXPECT_EQ(Signals(daemon, "SigCgt:"), kDaemonsSignals);
    for (const std::string name : {"keldra", "sshd"}) {
        SCOPED_TRACE(name);
        const pid_t pid = Only(name);
        EXPECT_EQ(terminal_->Run({"/bin/ls", Proc(pid) + "/fd"}).output, "0\n1\n2\n");
        // The stand-in Keldra blocks SIGQUIT of its own accord, to wait for it.
        const uint64_t own = name == "keldra" ? Bit(SIGQUIT) : 0;
        EXPECT_EQ(Signals(pid, "SigBlk:") & ~own, 0U);
        EXPECT_EQ(Signals(pid, "SigIgn:") | Signals(pid, "SigCgt:"), 0U);
    }
    // The daemon has no child left: what it started was adopted by the first process.
    for (const Process& process : terminal_->Processes()) {
        EXPECT_NE(process.state, 'Z') << process.name;
        EXPECT_NE(process.parent, daemon) << process.name;
    }
}
