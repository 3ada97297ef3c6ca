#include "demo/Story.h"

#include <algorithm>

#include "terminal/TerminalLayout.h"

namespace Demo {

bool Story::Tell(const std::vector<Scene>& scenes) {
    terminal_->GiveUpWhen(
        [this] { return terminal_->MonitorEnds(sceneBegin_).size() > endsExpected_; });
    return std::all_of(scenes.begin(), scenes.end(),
                       [this](const Scene& scene) { return Play(scene); });
}

bool Story::Play(const Scene& scene) {
    printer_->Heading(scene.name + ": " + scene.expected);
    // The time of the cold start counts from switching on.
    const bool first = situations_.empty();
    Situation& situation = situations_.emplace_back();
    situation.name = scene.name;
    situation.expected = scene.expected;
    if (!first) {
        terminal_->Mark();
        sceneBegin_ = terminal_->Events().size();
    }
    endsExpected_ = 0;
    if (scene.ordersStandIn && !terminal_->HasStandInKeldra()) {
        printer_->Line("skipped: your own program takes no orders", Colour::kYellow);
        situation.seen = situation.result = "skipped";
        return true;
    }
    const std::string obstacle = scene.cause ? scene.cause(terminal_) : "";
    if (!obstacle.empty()) {
        return Surprise(obstacle, &situation);
    }
    const double begin = first ? 0 : terminal_->Seconds();
    for (const Step& step : scene.steps) {
        endsExpected_ += step.source == Source::kInit ? 1 : 0;
        if (!Wait(step, begin, &situation)) {
            return Surprise(WhyNot(step), &situation);
        }
    }
    const std::string surprise = scene.check ? scene.check(terminal_) : "";
    if (!surprise.empty()) {
        return Surprise(surprise, &situation);
    }
    situation.seen = scene.seen;
    situation.result = "passed";
    return true;
}

bool Story::Wait(const Step& step, double begin, Situation* situation) {
    const auto event = terminal_->Await(step.source, step.text, patience_);
    if (!event) {
        return false;
    }
    const double seconds = std::max(0.0, event->seconds - begin);
    if (step.tells == Step::Tells::kDetected) {
        situation->detectSeconds = seconds;
    } else if (step.tells == Step::Tells::kRecovered) {
        situation->recoverSeconds = seconds;
    }
    return true;
}

std::string Story::WhyNot(const Step& step) const {
    const auto ends = terminal_->MonitorEnds(sceneBegin_);
    if (ends.size() <= endsExpected_) {
        return "missing: " + step.text;
    }
    const bool hasNeverCounted = situations_.size() == 1 && !terminal_->HasStandInKeldra();
    return ends.back() +
           (hasNeverCounted
                ? ": your program has to detach itself and to write a rising 32-bit number to " +
                      std::string(Terminals::kHeartbeatFile)
                : "");
}

bool Story::Surprise(const std::string& what, Situation* situation) {
    printer_->Line("NOT as expected: " + what, Colour::kRed);
    printer_->Line("expected:        " + situation->expected, Colour::kRed);
    situation->seen = "NOT that, see above";
    return false;
}

}  // namespace Demo
