#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "terminal/TerminalLayout.h"

namespace Terminals {

enum class Source { kLog, kSimulator, kKeldra, kSshd, kLed, kWatchdog, kInit };

// Something that happened in the terminal, or that the simulator did to it.
struct Event {
    double seconds = 0;  // since the terminal was first switched on
    Source source = Source::kSimulator;
    int priority = -1;     // facility and level of a log line, -1 if not known
    bool routine = false;  // repeats all the time; a reader can do without it
    std::string text;
};

struct CommandResult {
    int status = -1;     // as from waitpid; -1 when the command could not be started
    std::string output;  // standard output and standard error
};

// A terminal on which the daemon runs unmodified: orders go in, events come out.
//
// Events are added, and a bite of the watchdog causes a reboot, only during `Pump`, `Await` and
// `Run`. After the reboot the daemon is started with the same arguments again. The process must
// have only one thread.
class Terminal {
public:
    using Listener = std::function<void(const Event&)>;

    Terminal() = default;
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    virtual ~Terminal() = default;

    // Runs a script inside as root, by /bin/sh, and waits for its end, but not for its background
    // processes. Only the shell's built-in commands are certain to exist.
    virtual CommandResult Run(const std::string& script) = 0;
    // Adds the events that have happened; without any, waits at most this time for one. Returns
    // true if the descriptor `input` can be read.
    virtual bool Pump(int timeoutMs, int input = -1) = 0;
    // The shell command that runs the daemon on this kind of terminal; arguments may follow it.
    virtual std::string MonitorCommand() const { return kMonitorProgram; }
    // False if Keldra is the user's own program, which takes no orders.
    virtual bool HasStandInKeldra() const { return true; }
    // Describes this kind of terminal for the user.
    virtual std::string Description() = 0;

    // Boots from the main partition, without the daemon. False, with the reason, on failure.
    bool PowerOn(std::string* reason);
    // Starts the daemon as the terminal's boot does. Returns when the launched process has ended;
    // the status is not 0 if no daemon has come up.
    CommandResult StartMonitor(const std::string& arguments);

    // The PIDs inside with this command name, one a line.
    std::string Pids(const std::string& name);

    // Called with every event as it comes.
    void SetListener(Listener listener) { listener_ = std::move(listener); }
    // Waits for an event of the source whose text contains `text`. Each event is looked at once:
    // the search begins after the last event found for this source, or after `Mark`.
    std::optional<Event> Await(Source source, const std::string& text, double seconds);
    // From now on, `Await` returns nothing as soon as this function returns true.
    void GiveUpWhen(std::function<bool()> isHopeless) { isHopeless_ = std::move(isHopeless); }
    bool IsHopeless() const { return isHopeless_ && isHopeless_(); }
    // Adds the events up to now; `Await` then ignores all of them.
    void Mark();
    // Adds an event of the simulator.
    void Note(const std::string& text) { Add(Source::kSimulator, text); }
    const std::vector<Event>& Events() const { return events_; }
    // Reports of init, from that event on, that the daemon has ended or could not be started.
    std::vector<std::string> MonitorEnds(size_t from) const;
    // Since the terminal was first switched on; a reboot does not reset it.
    double Seconds() const;

protected:
    // Switches off a running terminal, and boots. False, with the reason, on failure.
    virtual bool Boot(std::string* reason) = 0;
    // Boots from the backup partition after a bite, and starts the daemon as before.
    void Reboot();
    // Adds an event for a log line, "<30>Nov 22 10:00:00 keldra_monitor: text" or on a console
    // "keldra_monitor: text", or for a report of a stand-in or of the watchdog, "keldra hangs now".
    // Ignores a line of any other sender and one
    // without a text.
    void Take(const std::string& line);

private:
    void Add(Source source, const std::string& text, int priority = -1);
    bool IsRoutine(Source source, const std::string& text);

    Listener listener_;
    std::function<bool()> isHopeless_;
    std::chrono::steady_clock::time_point start_;
    std::vector<Event> events_;
    // For each source, the first event that `Await` has not looked at.
    std::map<Source, size_t> next_;
    size_t mark_ = 0;
    std::string lastOfWatchdog_;
    std::string monitorArguments_;  // of the last call of `StartMonitor`
};

}  // namespace Terminals
