#pragma once

#include <functional>
#include <string>
#include <vector>

#include "terminal/Terminal.h"

namespace Demo {

using Terminals::Source;
using Terminals::Terminal;

struct Scene;

// An event for which a scene waits.
struct Step {
    Source source;
    std::string text;               // a part of the event's text
    double Scene::*time = nullptr;  // takes the time of the event, if it has a meaning
};

// A situation that the daemon guards against, and how it ended.
struct Scene {
    // Returns "", or the reason for which it failed.
    using Action = std::function<std::string(Terminal*)>;

    std::string name;
    std::string expected;
    std::string seen;        // if everything comes
    Action cause = nullptr;  // may be empty
    std::vector<Step> steps = {};
    Action check = nullptr;      // after the steps; may be empty
    bool ordersStandIn = false;  // skipped with the user's own Keldra

    const char* result = nullptr;  // "passed", "skipped" or "failed"; null if not played
    // Seconds from the fault, negative if the scene has none.
    double detectSeconds = -1;
    double recoverSeconds = -1;
};

// Plays the scenes on a terminal on which the daemon has just been started, and keeps their
// results. A step may take `patience` seconds. The first surprise, or an unexpected end of the
// daemon, ends the story. Returns true if everything came as expected.
bool Tell(std::vector<Scene>* scenes, Terminal* terminal, double patience);

}  // namespace Demo
