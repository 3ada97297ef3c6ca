#include <csignal>
#include <filesystem>
#include <set>

#include "tests/simulator/EndToEnd.h"

namespace fs = std::filesystem;
using namespace Simulator;

namespace {

constexpr uint64_t Bit(int signal) {
    return uint64_t{1} << (signal - 1);
}

constexpr uint64_t kDaemonsSignals =
    Bit(SIGINT) | Bit(SIGQUIT) | Bit(SIGUSR1) | Bit(SIGTERM) | Bit(SIGTSTP);

}  // namespace

class EndToEndHygieneTest : public EndToEnd {
protected:
    std::string Proc(const std::string& name) {
        return terminal_->Path("/proc/" + std::to_string(Only(name)));
    }
    std::set<std::string> Descriptors(const std::string& name) {
        std::set<std::string> numbers;
        for (const auto& entry : fs::directory_iterator(Proc(name) + "/fd")) {
            numbers.insert(entry.path().filename());
        }
        return numbers;
    }
    // Which of the daemon's signals the process has in this line of its status.
    uint64_t Signals(const std::string& name, const std::string& line) {
        const std::string status = ReadFile(Proc(name) + "/status");
        return std::stoull(status.substr(status.find(line) + line.size()), nullptr, 16) &
               kDaemonsSignals;
    }
};

TEST_F(EndToEndHygieneTest, WhatTheDaemonStartsHasNothingOfItAndIsNotItsChild) {
    StartHealthy();
    EXPECT_EQ(Signals("keldra_monitor", "SigCgt:"), kDaemonsSignals);
    for (const std::string name : {"keldra", "sshd"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Descriptors(name), (std::set<std::string>{"0", "1", "2"}));
        // The stand-in Keldra blocks SIGQUIT of its own accord, to wait for it.
        const uint64_t own = name == "keldra" ? Bit(SIGQUIT) : 0;
        EXPECT_EQ(Signals(name, "SigBlk:") & ~own, 0U);
        EXPECT_EQ(Signals(name, "SigIgn:") | Signals(name, "SigCgt:"), 0U);
    }
    // The daemon has no child left: what it started was adopted by the first process.
    const pid_t daemon = Only("keldra_monitor");
    for (const Process& process : terminal_->Processes()) {
        EXPECT_NE(process.state, 'Z') << process.name;
        EXPECT_NE(process.parent, daemon) << process.name;
    }
}
