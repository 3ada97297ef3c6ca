#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "terminal/Faults.h"
#include "terminal/simulated/SimulatedTerminal.h"
#include "tests/support/TempDir.h"

// Each case uses names of both.
using namespace Terminals;
using namespace Terminals::Simulated;

// A case in which the real daemon runs in a simulated terminal. The case is skipped where the
// host permits no namespaces. The events are printed when the case fails.
class EndToEnd : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Switches a terminal on, without the daemon.
    void PowerOn(const TerminalOptions& options = {});
    // Starts the daemon with a heartbeat of one second and these arguments added, in a terminal
    // that is switched on if it was not.
    void StartMonitor(const std::string& arguments = "-X 50");
    // Does so and waits until Keldra is healthy for the first time.
    void StartHealthy();

    // Each waits for a line that contains the text, generously, and fails when it does not come.
    bool ExpectLog(const std::string& text) { return Expect(Source::kLog, text); }
    bool Expect(Source source, const std::string& text);
    // Waits for it, as generously.
    bool Becomes(const std::function<bool()>& condition);
    // The only process of that name; waits for one to appear and for a second one, like the
    // launcher of a daemon, to go.
    pid_t Only(const std::string& name);

    std::unique_ptr<SimulatedTerminal> terminal_;
};
