#include "tests/terminal/EndToEnd.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace {

// Much longer than anything takes, even on a slow machine.
constexpr double kDeadlineSeconds = 60;

}  // namespace

void EndToEnd::SetUp() {
    const int probe = std::system("\"" STAND_IN_DIRECTORY "/boot\" --probe");
    if (WEXITSTATUS(probe) == 3) {
        GTEST_SKIP() << "this host does not permit the namespaces of a simulated terminal";
    }
    ASSERT_EQ(probe, 0);
}

void EndToEnd::TearDown() {
    if (!terminal_) {
        return;
    }
    for (const auto& file : std::filesystem::directory_iterator(terminal_->Path("/tmp"))) {
        if (file.path().filename().string().rfind("sanitizer", 0) == 0) {
            ADD_FAILURE() << ReadFile(file.path());
        }
    }
    for (const Event& event : terminal_->Events()) {
        if (HasFailure()) {
            std::cout << event.seconds << "\t" << static_cast<int>(event.source) << "\t"
                      << event.text << "\n";
        }
    }
}

void EndToEnd::StartHealthy() {
    terminal_ = std::make_unique<SimulatedTerminal>();
    std::string reason;
    ASSERT_TRUE(terminal_->PowerOn(&reason)) << reason;
    const CommandResult start = terminal_->StartMonitor("-t 1 -X 50");
    ASSERT_EQ(start.status, 0) << start.output;
    const auto healthy =
        terminal_->Await(Source::kLog, "Keldra started responding again after", kDeadlineSeconds);
    ASSERT_TRUE(healthy.has_value());
}

bool EndToEnd::Becomes(const std::function<bool()>& condition) {
    const double deadline = terminal_->Seconds() + kDeadlineSeconds;
    // Asked only once a turn: a condition that has become true may become false at any time.
    while (!condition()) {
        if (terminal_->Seconds() >= deadline) {
            return false;
        }
        terminal_->Pump(10);
    }
    return true;
}

pid_t EndToEnd::Only(const std::string& name) {
    std::vector<Process> processes;
    EXPECT_TRUE(Becomes([&] {
        processes = terminal_->Processes(name);
        return processes.size() == 1;
    })) << name;
    return processes.size() == 1 ? processes[0].pid : -1;
}
