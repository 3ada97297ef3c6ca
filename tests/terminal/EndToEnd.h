#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

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

    // Starts the daemon with a heartbeat of one second in a new terminal, and waits until Keldra is
    // healthy.
    void StartHealthy();

    // Waits for it, generously.
    bool Becomes(const std::function<bool()>& condition);
    // The only process of that name; waits for one to appear and for a second one, like the
    // launcher of a daemon, to go.
    pid_t Only(const std::string& name);

    std::unique_ptr<SimulatedTerminal> terminal_;
};
