#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Terminals {

enum class Source { kLog, kSimulator, kKeldra, kSshd, kLed, kWatchdog, kInit };

// Something that happened in the terminal, or that the simulator did to it.
struct Event {
    double seconds = 0;  // since the terminal was first switched on
    Source source = Source::kSimulator;
    int priority = -1;     // facility and level of a log line, -1 for everything else
    bool routine = false;  // repeats all the time; a reader can do without it
    std::string text;
};

struct CommandResult {
    int status = -1;     // as from waitpid; -1 when the command could not be started
    std::string output;  // standard output and standard error
};

// A terminal on which the daemon runs unmodified, whatever it is made of: orders go in, events
// come out.
//
// Nothing happens behind the caller's back: events are taken in, and a bite of the watchdog ends
// in a reboot, only during `Pump`, `Await` and `Run`. After the reboot the daemon is started with
// the same arguments again. To be used from one thread of a process with no other.
class Terminal {
public:
    using Listener = std::function<void(const Event&)>;

    Terminal() = default;
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    virtual ~Terminal() = default;

    // Runs a program inside as root and waits for its end, not for what it left in background.
    virtual CommandResult Run(const std::vector<std::string>& command) = 0;
    // Takes in what has happened, waiting at most so long for something. Returns true when
    // `input`, if given, can be read.
    virtual bool Pump(int timeoutMs, int input = -1) = 0;
    // The command line that runs the daemon's program, preceded by what it needs here.
    virtual std::vector<std::string> MonitorCommand(
        const std::vector<std::string>& arguments) const;
    // False when Keldra is a program of the user's, which takes no orders.
    virtual bool HasStandInKeldra() const { return true; }
    // What it is, in a line for the user.
    virtual std::string Description() const = 0;

    // Boots from the main partition, without the daemon. False with the reason on failure.
    bool PowerOn(std::string* reason);
    // Starts the daemon as the terminal's boot does. Returns when the launched process has ended,
    // with a status other than 0 if it leaves no daemon behind.
    CommandResult StartMonitor(const std::vector<std::string>& arguments);
    // Runs a script inside, by /bin/sh, with nothing but the shell's own commands to rely on.
    CommandResult RunScript(const std::string& script) { return Run({"/bin/sh", "-c", script}); }

    // The PIDs inside with this command name, separated by blanks.
    std::string Pids(const std::string& name);

    // Called with every event as it comes.
    void SetListener(Listener listener) { listener_ = std::move(listener); }
    // Waits for an event of the source whose text contains `text`. Every event of a source is
    // looked at once: the search begins after the source's last one found, or after `Mark`.
    std::optional<Event> Await(Source source, const std::string& text, double seconds);
    // From now on `Await` gives up as soon as this returns true.
    void GiveUpWhen(std::function<bool()> isHopeless) { isHopeless_ = std::move(isHopeless); }
    bool IsHopeless() const { return isHopeless_ && isHopeless_(); }
    // Takes in everything up to now and lets `Await` begin behind it.
    void Mark();
    // Adds an event of the simulator's own.
    void Note(const std::string& text) { Add({0, Source::kSimulator, -1, false, text}); }
    const std::vector<Event>& Events() const { return events_; }
    // The news of init from that event on: each tells why the daemon no longer runs.
    std::vector<std::string> MonitorEnds(size_t from) const;
    // Since the terminal was first switched on, reboots included.
    double Seconds() const;

protected:
    // Switches off what runs, and boots. False with the reason on failure.
    virtual bool Boot(std::string* reason) = 0;
    // After a bite: boots from the backup partition, and starts the daemon as it was started
    // before.
    void Reboot();
    // For `Take`, a text of the watchdog's; by default an event with that text.
    virtual void TakeWatchdog(const std::string& text) { AddWatchdog(text); }

    // Takes in a datagram that came to the terminal's syslog: a log line, "<30>Nov 22 10:00:00
    // keldra_monitor: text", or a report of a stand-in, "keldra hangs now".
    void Take(const std::string& datagram);
    // Armed anew with the same time is routine.
    void AddWatchdog(const std::string& text);
    void Add(Event event);

private:
    Listener listener_;
    std::function<bool()> isHopeless_;
    std::chrono::steady_clock::time_point start_;
    std::vector<Event> events_;
    // For each source, the first event that `Await` has not looked at.
    std::map<Source, size_t> next_;
    size_t mark_ = 0;
    std::string lastOfWatchdog_;
    std::vector<std::string> monitorArguments_;  // what `StartMonitor` was last called with
};

}  // namespace Terminals
