#include "demo/LifeOfATerminal.h"

#include <algorithm>

#include "terminal/Faults.h"
#include "terminal/TerminalLayout.h"

namespace Demo {
namespace {

using namespace Terminals;

constexpr char kStart[] = "/usr/sbin/keldra -cp 23";
constexpr char kSshdStart[] = "Starting the SSH daemon because it was not detected";

Step Detected(const std::string& text) {
    return {Source::kLog, text, Step::Tells::kDetected};
}

Step Log(const std::string& text) {
    return {Source::kLog, text};
}

Scene::Action Fault(const std::string& fault) {
    return [fault](Terminal* terminal) { return Cause(terminal, fault); };
}

// Changes something that lasts, and lets Keldra crash.
Scene::Action Crash(std::string (*change)(Terminal*)) {
    return [change](Terminal* terminal) {
        const std::string obstacle = change(terminal);
        return obstacle.empty() ? Cause(terminal, "crash") : obstacle;
    };
}

// The backup file's name begins with the primary file's.
std::string StartedWithPrimaryOptions(Terminal* terminal) {
    const auto& events = terminal->Events();
    const auto start = std::find_if(events.rbegin(), events.rend(), [](const Event& e) {
        return e.source == Source::kLog && e.text.find(kStart) == 0;
    });
    const bool primary = start->text == std::string(kStart) + " -cfg " + kPrimaryOptions;
    return primary ? "" : start->text;
}

std::string ReportSaysOkay(Terminal* terminal) {
    const std::string report = terminal->Run(terminal->MonitorCommand({"-i"})).output;
    Printer().Quote(report);
    const bool okay = report.find("Keldra State:   Keldra_Up_And_Okay\n") != std::string::npos;
    return okay ? "" : "no healthy state in the answer";
}

// Whether there was a strike among the events from that one on.
bool StrikeSince(const Terminal& terminal, size_t event) {
    const auto& events = terminal.Events();
    return std::any_of(events.begin() + static_cast<std::ptrdiff_t>(event), events.end(),
                       [](const Event& e) { return e.text.find("Strike ") == 0; });
}

}  // namespace

Step Recovered() {
    return {Source::kLog, "Keldra started responding again", Step::Tells::kRecovered};
}

std::string AwaitNoStrike(Terminal* terminal, double patience, const Scene::Action& disturb) {
    for (int chance = 0; chance < 3; ++chance) {
        const size_t from = terminal->Events().size();
        const std::string obstacle = disturb ? disturb(terminal) : "";
        if (!obstacle.empty()) {
            return obstacle;
        }
        terminal->Mark();
        for (int check = 0; check < 2; ++check) {
            if (!terminal->Await(Source::kWatchdog, kArmed, patience)) {
                return std::string("missing: ") + kArmed;
            }
        }
        if (!StrikeSince(*terminal, from)) {
            terminal->Note("the watchdog was re-armed twice, and there was no strike");
            return "";
        }
    }
    return "a strike, though Keldra is well";
}

std::vector<Scene> LifeOfATerminal(double patience) {
    const std::vector<Step> restart = {Log("Strike 1!"), Log(kStart), Recovered()};
    const auto restartAfter = [&](const std::string& sign) {
        std::vector<Step> steps = {Detected(sign)};
        steps.insert(steps.end(), restart.begin(), restart.end());
        return steps;
    };
    return {
        {"cold start",
         "Keldra and sshd are started",
         "both started",
         nullptr,
         {Detected("Keldra is not running!"), Log(kStart), Log(kSshdStart), Recovered()}},
        {"healthy",
         "watchdog re-armed, no strike",
         "no strike",
         nullptr,
         {},
         [=](Terminal* terminal) { return AwaitNoStrike(terminal, patience); }},
        {"Keldra hangs", "missed heartbeat, SIGQUIT, restart", "strike 1, restarted", Fault("hang"),
         restartAfter("Keldra missed a heartbeat")},
        {"error state", "count 0 noticed, SIGQUIT, restart", "strike 1, restarted", Fault("error"),
         restartAfter("Keldra is in error state"), nullptr, true},
        {"Keldra crashes", "absence noticed, restart", "strike 1, restarted", Fault("crash"),
         restartAfter("Keldra is not running!")},
        {"sshd dies",
         "started through the service script",
         "started",
         KillSshd,
         {Detected(kSshdStart), {Source::kSshd, "is up", Step::Tells::kRecovered}}},
        {"damaged options",
         "backup options after two strikes",
         "backup options",
         Crash(DamagePrimaryOptions),
         {Detected("Strike 1!"), Log("Strike 2!"), Log(std::string("-cfg ") + kPrimaryOptions),
          Log("Strike 3!"), Log(std::string("-cfg ") + kBackupOptions), Recovered()},
         nullptr,
         true},
        {"options repaired", "next start uses primary options", "primary options", Crash(Repair),
         restartAfter("Keldra is not running!"), StartedWithPrimaryOptions, true},
        {"status query",
         "keldra_monitor -i tells the state",
         "Keldra_Up_And_Okay",
         nullptr,
         {},
         ReportSaysOkay},
        {"no start at all",
         "4 strikes, watchdog bites, reboot",
         "on backup partition",
         Crash(RefuseToStart),
         {Detected("Keldra is not running!"),
          Log("Keldra failed to start, status: "),
          Log("Strike 4!"),
          Log("Maximum consecutive failure threshold exceeded"),
          {Source::kWatchdog, "armed with 30 s"},
          {Source::kLed, "all error"},
          {Source::kInit, "keldra_monitor has ended: exit status 0"},
          {Source::kWatchdog, "BITES"},
          {Source::kSimulator, "backup partition"},
          Recovered()}},
    };
}

}  // namespace Demo
