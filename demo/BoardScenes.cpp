#include "demo/BoardScenes.h"

#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>

#include "demo/LifeOfATerminal.h"

namespace Demo {
namespace {

constexpr double kBiteSeconds = 300;
const std::string kMonitor = Terminals::kMonitorProgram;

// Runs a script on the board. Returns "" if it ends with the status and its output contains the
// answer, or else what is wrong.
std::string Obey(Terminal* board, const std::string& script, const std::string& answer = "",
                 int status = 0) {
    const auto result = board->Run(script);
    if (result.status == W_EXITCODE(status, 0) && result.output.find(answer) != std::string::npos) {
        return "";
    }
    return "\"" + script + "\" ends with wait status " + std::to_string(result.status) +
           " and prints \"" + result.output + "\", but \"" + answer + "\" and exit status " +
           std::to_string(status) + " were expected";
}

Scene::Action Script(const std::string& script) {
    return [script](Terminal* board) { return Obey(board, script); };
}

// By the board's clock.
double Uptime(Terminal* board) {
    return strtod(board->Run("read up rest </proc/uptime; echo $up").output.c_str(), nullptr);
}

constexpr char kTerminated[] = "the daemon gets SIGTERM";
constexpr char kReplaced[] = "a new daemon is started";
constexpr char kUnchecked[] = "the new daemon has not checked yet";

bool IsArmedBetween(const Terminal& board, const std::string& begin, const std::string& end) {
    const auto& events = board.Events();
    const auto find = [&](auto from, auto to, const std::string& text) {
        return std::find_if(from, to, [&](const auto& event) { return event.text == text; });
    };
    const auto first = find(events.begin(), events.end(), begin);
    const auto last = find(first, events.end(), end);
    return find(first, last, kArmed) != last;
}

// One script does all of it, so the board does not wait for a slow host. The script reports through
// the kernel's log, like the watchdog, so the order of their lines is certain. The first check
// comes at least 0.38 s after the start.
Scene Takeover(unsigned period, const std::shared_ptr<double>& handedOver) {
    const auto report = [](const std::string& text) {
        return "echo '<5>init " + text + "' >/dev/kmsg\n";
    };
    const std::string script = "now() { read -r up rest </proc/uptime; echo ${up%.*}${up#*.}; }\n" +
                               report(kTerminated) +
                               "kill -TERM $(pidof keldra_monitor)\n"
                               "while [ -n \"$(pidof keldra_monitor)\" ]; do :; done\n" +
                               report(kReplaced) + kMonitor + " -t " + std::to_string(period) +
                               "\nend=$(($(now) + 20))\n"
                               "while [ $(now) -lt $end ]; do :; done\n" +
                               report(kUnchecked);
    const auto check = [=](Terminal* board) -> std::string {
        *handedOver = Uptime(board);
        if (!IsArmedBetween(*board, kTerminated, kReplaced)) {
            return "the old daemon does not re-arm the watchdog as its last act";
        }
        return IsArmedBetween(*board, kReplaced, kUnchecked)
                   ? ""
                   : "the new daemon does not re-arm the watchdog as its first act";
    };
    return {"takeover",
            "SIGTERM, a new daemon takes over",
            "stays armed",
            Script(script),
            {{Source::kLog, "shutting down gracefully in response to signal 15"},
             {Source::kInit, "keldra_monitor has ended: exit status 0"}},
            check};
}

Scene InitScript(unsigned period) {
    const std::string seconds = std::to_string(period);
    const std::string script = "/etc/init.d/keldra-monitor ";
    const struct {
        std::string command, answer;
        int status;
    } calls[] = {
        {"echo 'KELDRA_MONITOR_OPTIONS=\"-t " + seconds + "\"' >/etc/default/keldra_monitor", "",
         0},
        {script + "status", "Keldra_Up_And_Okay", 0},
        {script + "health", "Keldra_Up_And_Okay", 0},
        {script + "stop", "has been stopped", 0},
        {script + "status", "is not running", 3},
        {script + "start", "has been started", 0},
        {script + "status", "Heartbeat Timeout:        " + seconds + " (seconds)", 0},
        {script + "restart", "has been started", 0},
    };
    const auto play = [=](Terminal* board) {
        for (const auto& call : calls) {
            board->Note(call.command);
            const std::string problem = Obey(board, call.command, call.answer, call.status);
            if (!problem.empty()) {
                return problem;
            }
        }
        return std::string();
    };
    return {"init script", "stop, status, start, restart", "each as it should", play, {}, nullptr};
}

// The script lets Keldra's launcher go on after it has sent all signals.
Scene SignalStorm() {
    const std::string waits = Terminals::kKeldraWaits;
    const std::string script =
        "monitor=$(pidof keldra_monitor) old=$(pidof keldra)\n"
        "echo >" +
        waits +
        " && kill -KILL $old\n"
        "while new=$(pidof keldra); [ -z \"$new\" ] || [ \"$new\" = \"$old\" ]; do :; done\n"
        "sent=0\n"
        "while [ $sent -lt 200 ]; do kill -USR1 $monitor && sent=$((sent + 1)); done\n"
        ": >" +
        waits + "\n[ \"$(pidof keldra_monitor)\" = \"$monitor\" ]";
    return {"signal storm",
            "200 SIGUSR1 during a slow launch",
            "lives, one Keldra",
            Script(script),
            {{Source::kLog, "Keldra is not running!"}, {Source::kKeldra, "is up"}, Recovered()},
            Script("set -- $(pidof keldra) && [ $# -eq 1 ]")};
}

Scene LaterYears(double patience) {
    const auto jump = [](Terminal* board) {
        board->Note("the clock is set to 2040");
        return Obey(board, "date -s '2000-01-01 00:00:00' && date -s '2040-01-01 00:00:00'",
                    "2040");
    };
    const auto play = [=](Terminal* board) {
        std::string problem = AwaitNoStrike(board, patience, jump);
        for (int query = 0; query < 2 && problem.empty(); ++query) {
            problem = Obey(board, kMonitor + " -i", "Keldra_Up_And_Okay");
        }
        return problem;
    };
    return {"year 2040", "no strike, -i answers twice", "answers twice", play, {}, nullptr};
}

// Without the new daemon, the watchdog as the old one armed it would have bitten by then.
Scene DeadlinePasses(unsigned divisor, const std::shared_ptr<double>& handedOver) {
    const auto wait = [=](Terminal* board) {
        const double rest = *handedOver + kBiteSeconds / divisor - Uptime(board);
        const double seconds = std::max(0.0, std::ceil(rest)) + 1;
        board->Note("in " + std::to_string(static_cast<int>(seconds)) +
                    " s nothing can bite any more");
        return Obey(board, "sleep " + std::to_string(static_cast<int>(seconds)));
    };
    const auto noBite = [](Terminal* board) {
        const auto& events = board->Events();
        const bool bitten = std::any_of(events.begin(), events.end(), [](const auto& e) {
            return e.text.find("BITES") != std::string::npos;
        });
        return bitten ? "a bite" : "";
    };
    return {"old deadline", "passes, and nothing bites", "no bite", wait, {}, noBite};
}

Scene StoppedDaemon() {
    return {"daemon stopped",
            "SIGSTOP, watchdog bites, reboot",
            "on backup partition",
            [](Terminal* board) {
                board->Note("the daemon is stopped (SIGSTOP)");
                return Obey(board, "kill -STOP $(pidof keldra_monitor)");
            },
            {{Source::kWatchdog, "BITES", &Scene::detectSeconds},
             {Source::kSimulator, "backup partition"},
             Recovered()},
            nullptr};
}

}  // namespace

std::vector<Scene> BoardScenes(unsigned divisor, unsigned period, double patience) {
    // A moment shortly after the last arming by the old daemon.
    const auto handedOver = std::make_shared<double>(0);
    return {Takeover(period, handedOver),
            InitScript(period),
            SignalStorm(),
            LaterYears(patience),
            DeadlinePasses(divisor, handedOver),
            StoppedDaemon()};
}

}  // namespace Demo
