#include "demo/Story.h"

#include <algorithm>

#include "demo/Printer.h"

namespace Demo {
namespace {

// Why an event does not come. Events of the scene begin at `from`.
std::string WhyNot(const std::string& text, const Terminal& terminal, size_t from,
                   size_t endsExpected) {
    const auto ends = terminal.MonitorEnds(from);
    if (ends.size() <= endsExpected) {
        return "missing: " + text;
    }
    const bool hasNeverCounted = from == 0 && !terminal.HasStandInKeldra();
    return ends.back() +
           (hasNeverCounted
                ? ": your program has to detach itself and to write a rising 32-bit number to " +
                      std::string(Terminals::kHeartbeatFile)
                : "");
}

// Returns "" if everything comes as expected, or what is wrong.
std::string Play(Scene* scene, Terminal* terminal, double patience, bool isFirst) {
    // The time of the cold start counts from switching on.
    if (!isFirst) {
        terminal->Mark();
    }
    const size_t from = isFirst ? 0 : terminal->Events().size();
    size_t endsExpected = 0;  // of the daemon, up to this step
    terminal->GiveUpWhen(
        [=, &endsExpected] { return terminal->MonitorEnds(from).size() > endsExpected; });
    std::string surprise = scene->cause ? scene->cause(terminal) : "";
    const double begin = isFirst ? 0 : terminal->Seconds();
    for (const Step& step : scene->steps) {
        if (!surprise.empty()) {
            break;
        }
        endsExpected += step.source == Source::kInit ? 1 : 0;
        const auto event = terminal->Await(step.source, step.text, patience);
        if (!event) {
            surprise = WhyNot(step.text, *terminal, from, endsExpected);
        } else if (step.time != nullptr) {
            scene->*step.time = std::max(0.0, event->seconds - begin);
        }
    }
    if (surprise.empty() && scene->check) {
        surprise = scene->check(terminal);
    }
    terminal->GiveUpWhen(nullptr);
    return surprise;
}

}  // namespace

bool Tell(std::vector<Scene>* scenes, Terminal* terminal, double patience) {
    for (Scene& scene : *scenes) {
        PrintHeading(scene.name + ": " + scene.expected);
        if (scene.ordersStandIn && !terminal->HasStandInKeldra()) {
            PrintLine("skipped: your own program takes no orders", Colour::kYellow);
            scene.seen = scene.result = "skipped";
            continue;
        }
        const std::string surprise = Play(&scene, terminal, patience, &scene == &scenes->front());
        scene.result = surprise.empty() ? "passed" : "failed";
        if (!surprise.empty()) {
            PrintLine("NOT as expected: " + surprise, Colour::kRed);
            PrintLine("expected:        " + scene.expected, Colour::kRed);
            scene.seen = "NOT that, see above";
            return false;
        }
    }
    return true;
}

}  // namespace Demo
