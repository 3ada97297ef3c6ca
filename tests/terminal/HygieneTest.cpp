#include <csignal>

#include "tests/terminal/EndToEnd.h"

namespace {

constexpr uint64_t Bit(int signal) {
    return uint64_t{1} << (signal - 1);
}

constexpr uint64_t kDaemonsSignals = Bit(SIGINT) | Bit(SIGQUIT) | Bit(SIGUSR1) | Bit(SIGTERM) |
                                     Bit(SIGTSTP) | Bit(SIGHUP) | Bit(SIGXFSZ) | Bit(SIGPIPE);

}  // namespace

struct EndToEndHygieneTest : EndToEnd {
    static std::string Proc(pid_t pid) { return "/proc/" + std::to_string(pid); }
    // The signals that the process has in this line of its status.
    uint64_t Signals(pid_t pid, const std::string& line) {
        const std::string status = ReadFile(terminal_->Path(Proc(pid) + "/status"));
        return std::stoull(status.substr(status.find(line) + line.size()), nullptr, 16);
    }
};

TEST_F(EndToEndHygieneTest, WhatTheDaemonStartsHasNothingOfItAndIsNotItsChild) {
    PowerOn();
    // A careless starter: every signal is blocked, and descriptors are left open.
    const CommandResult start = RunMonitorInShell(
        "exec bash -c 'ulimit -n 4096; exec 9>/tmp/held 2000>&9; exec env --block-signal \"$@\"' "
        "sh \"$@\"",
        "-t 1");
    ASSERT_EQ(start.status, 0) << start.output;
    ExpectLog("Keldra started responding again after");
    const pid_t daemon = Only("keldra_monitor");
    const std::string open = terminal_->Run("ls -l " + Proc(daemon) + "/fd").output;
    EXPECT_EQ(open.find("/tmp/held"), std::string::npos) << open;
    EXPECT_EQ(Signals(daemon, "SigCgt:") & kDaemonsSignals, kDaemonsSignals);
    for (const std::string name : {"keldra", "sshd"}) {
        SCOPED_TRACE(name);
        const pid_t pid = Only(name);
        EXPECT_EQ(terminal_->Run("ls " + Proc(pid) + "/fd").output, "0\n1\n2\n");
        // The stand-in Keldra itself blocks SIGQUIT, to wait for it.
        const uint64_t own = name == "keldra" ? Bit(SIGQUIT) : 0;
        EXPECT_EQ(Signals(pid, "SigBlk:") & ~own, 0U);
        const uint64_t handled = Signals(pid, "SigIgn:") | Signals(pid, "SigCgt:");
        EXPECT_EQ(handled & kDaemonsSignals, 0U);
    }
    // The daemon has no child left: the first process has adopted those that it started.
    for (const Process& process : terminal_->Processes()) {
        EXPECT_NE(process.state, 'Z') << process.name;
        EXPECT_NE(process.parent, daemon) << process.name;
    }
}
