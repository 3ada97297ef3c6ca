#include "demo/LifeOfATerminal.h"

#include <algorithm>

#include "demo/Printer.h"
#include "terminal/Faults.h"

namespace Demo {
namespace {

using namespace Terminals;

constexpr char kStart[] = "/usr/sbin/keldra -cp 23";
constexpr char kRecovery[] = "Keldra started responding again";
constexpr char kSshdStart[] = "Starting the SSH daemon because it was not detected";

Step Detected(const std::string& text) {
    return {Source::kLog, text, &Scene::detectSeconds};
}

Step Log(const std::string& text) {
    return {Source::kLog, text};
}

bool IsStrike(const Event& event) {
    return event.source == Source::kLog && event.text.find("Strike ") == 0;
}

// Whether the last news of Keldra is a strike.
bool HasStruck(const Terminal& terminal) {
    const auto& events = terminal.Events();
    const auto last = std::find_if(events.rbegin(), events.rend(), [](const Event& e) {
        return IsStrike(e) || e.text.find(kRecovery) == 0;
    });
    return last != events.rend() && IsStrike(*last);
}

// After a stall of the host, overdue checks follow at once, and the second of them is a strike. It
// may end the Keldra that has just got the fault; then the next one that is well gets it, too.
Scene::Action Fault(const std::string& fault, double patience,
                    std::string (*change)(Terminal*) = nullptr) {
    return [=](Terminal* terminal) {
        const double deadline = terminal->Seconds() + patience;
        std::string obstacle = change != nullptr ? change(terminal) : "";
        obstacle += Cause(terminal, fault);
        while (!obstacle.empty() || HasStruck(*terminal)) {
            if (!terminal->Await(Source::kLog, kRecovery, deadline - terminal->Seconds())) {
                return obstacle.empty() ? "Keldra does not recover" : obstacle;
            }
            if (!HasStruck(*terminal)) {
                terminal->Mark();
                obstacle = Cause(terminal, fault);
            }
        }
        return obstacle;
    };
}

// Makes the next start fail, and lets Keldra crash if it runs.
Scene::Action Crash(std::string (*change)(Terminal*)) {
    return [=](Terminal* terminal) {
        const std::string obstacle = change(terminal);
        (void)Cause(terminal, "crash");
        return obstacle;
    };
}

// Compares the whole line: the name of the backup file begins with that of the primary file.
std::string StartedWithPrimaryOptions(Terminal* terminal) {
    const auto& events = terminal->Events();
    const auto start = std::find_if(events.rbegin(), events.rend(), [](const Event& e) {
        return e.source == Source::kLog && e.text.find(kStart) == 0;
    });
    const bool primary = start->text == std::string(kStart) + " -cfg " + kPrimaryOptions;
    return primary ? "" : start->text;
}

std::string ReportSaysOkay(Terminal* terminal, double patience) {
    const double deadline = terminal->Seconds() + patience;
    std::string report;
    bool isOkay = false;
    while (!isOkay && terminal->Seconds() < deadline && !terminal->IsHopeless()) {
        (void)terminal->Pump(report.empty() ? 0 : 200);
        report = terminal->Run(terminal->MonitorCommand() + " -i").output;
        isOkay = report.find("Keldra State:   Keldra_Up_And_Okay\n") != std::string::npos;
    }
    PrintQuote(report);
    return isOkay ? "" : "no healthy state in the answer";
}

}  // namespace

Step Recovered() {
    return {Source::kLog, kRecovery, &Scene::recoverSeconds};
}

std::string AwaitNoStrike(Terminal* terminal, double patience, const Scene::Action& disturb) {
    const double deadline = terminal->Seconds() + patience;
    do {
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
        const auto& events = terminal->Events();
        if (std::none_of(events.begin() + static_cast<std::ptrdiff_t>(from), events.end(),
                         IsStrike)) {
            terminal->Note("the watchdog was re-armed twice, and there was no strike");
            return "";
        }
    } while (terminal->Seconds() < deadline);
    return "a strike, though Keldra is well";
}

std::vector<Scene> LifeOfATerminal(double patience) {
    const auto restartAfter = [](const std::string& sign) -> std::vector<Step> {
        return {Detected(sign), Log("Strike 1!"), Log(kStart), Recovered()};
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
        {"Keldra hangs", "missed heartbeat, SIGQUIT, restart", "strike 1, restarted",
         Fault("hang", patience), restartAfter("Keldra missed a heartbeat")},
        {"error state", "count 0 noticed, SIGQUIT, restart", "strike 1, restarted",
         Fault("error", patience), restartAfter("Keldra is in error state"), nullptr, true},
        {"Keldra crashes", "absence noticed, restart", "strike 1, restarted",
         Fault("crash", patience), restartAfter("Keldra is not running!")},
        {"sshd dies",
         "started through the service script",
         "started",
         KillSshd,
         {Detected(kSshdStart), {Source::kSshd, "is up", &Scene::recoverSeconds}}},
        {"damaged options",
         "backup options after two strikes",
         "backup options",
         Crash(DamagePrimaryOptions),
         {Detected("Strike 1!"), Log("Strike 2!"), Log(std::string("-cfg ") + kPrimaryOptions),
          Log("Strike 3!"), Log(std::string("-cfg ") + kBackupOptions), Recovered()},
         nullptr,
         true},
        {"options repaired", "next start uses primary options", "primary options",
         Fault("crash", patience, Repair), restartAfter("Keldra is not running!"),
         StartedWithPrimaryOptions, true},
        {"status query",
         "keldra_monitor -i tells the state",
         "Keldra_Up_And_Okay",
         nullptr,
         {},
         [=](Terminal* terminal) { return ReportSaysOkay(terminal, patience); }},
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
