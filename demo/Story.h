#pragma once

#include <functional>
#include <string>
#include <vector>

#include "demo/Printer.h"
#include "terminal/Terminal.h"

namespace Demo {

using Terminals::Source;
using Terminals::Terminal;

// An event for which a scene waits, and the meaning of its time.
struct Step {
    enum class Tells { kNothing, kDetected, kRecovered };
    Source source;
    std::string text;  // a part of the event's text
    Tells tells = Tells::kNothing;
};

// A situation that the daemon guards against.
struct Scene {
    // Returns "", or the reason for which it failed.
    using Action = std::function<std::string(Terminal*)>;

    std::string name;
    std::string expected;
    std::string seen;  // shown if everything came
    Action cause;      // may be empty
    std::vector<Step> steps;
    Action check = nullptr;      // after the steps; may be empty
    bool ordersStandIn = false;  // skipped with the user's own Keldra
};

// The result of one scene. Times are seconds from the fault, negative if the scene has none.
struct Situation {
    std::string name;
    std::string expected;
    std::string seen;
    const char* result = "failed";  // or "passed", "skipped"
    double detectSeconds = -1;
    double recoverSeconds = -1;
};

// Plays scenes on a terminal on which the daemon has just been started, and keeps their results. A
// step may take `patience` seconds; the first surprise, or an unexpected end of the daemon, ends
// the story.
class Story {
public:
    Story(Terminal* terminal, const Printer* printer, double patience)
        : terminal_(terminal), printer_(printer), patience_(patience) {}

    // Returns true if everything came as expected.
    bool Tell(const std::vector<Scene>& scenes);

    const std::vector<Situation>& Situations() const { return situations_; }

private:
    bool Play(const Scene& scene);
    bool Wait(const Step& step, double begin, Situation* situation);
    std::string WhyNot(const Step& step) const;
    bool Surprise(const std::string& what, Situation* situation);

    Terminal* terminal_;
    const Printer* printer_;
    double patience_;
    std::vector<Situation> situations_;
    size_t sceneBegin_ = 0;    // the first event of the scene
    size_t endsExpected_ = 0;  // of the daemon, in this scene and up to this step
};

}  // namespace Demo
