#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/Event.h"
#include "simulator/Processes.h"
#include "simulator/StandInWatchdog.h"
#include "simulator/TerminalLayout.h"

namespace Simulator {

struct CommandResult {
    int status = -1;     // as from waitpid; -1 when the command could not be started
    std::string output;  // standard output and standard error
};

// A terminal in namespaces of its own: its root file system in memory, its processes, its syslog
// and its hardware watchdog. Everything ends with this object, or with the process that has it.
//
// Nothing happens behind the caller's back: events are taken in, and the watchdog bites, only
// during `Pump`, `Await` and `Run`. To be used from one thread of a process with no other.
class SimulatedTerminal {
public:
    using Listener = std::function<void(const Event&)>;

    explicit SimulatedTerminal(TerminalOptions options);
    SimulatedTerminal(const SimulatedTerminal&) = delete;
    SimulatedTerminal& operator=(const SimulatedTerminal&) = delete;
    ~SimulatedTerminal();

    // Told of every event as it comes.
    void SetListener(Listener listener) { listener_ = std::move(listener); }

    // Boots from the main partition, without the daemon. False with the reason on failure.
    bool PowerOn(std::string* reason);
    // Starts the daemon as the terminal's boot does; it is started with the same arguments again
    // after a reboot. Returns when the launched process has ended.
    CommandResult StartMonitor(const std::vector<std::string>& arguments);
    // The command line that runs the daemon's program, preceded by what it needs here.
    std::vector<std::string> MonitorCommand(const std::vector<std::string>& arguments) const;

    // Runs a program inside as root and waits for its end, not for what it left in background.
    CommandResult Run(const std::vector<std::string>& command);
    bool Signal(pid_t pid, int signal);

    // Takes in what has happened, waiting at most so long for something. Returns true when
    // `input`, if given, can be read.
    bool Pump(int timeoutMs, int input = -1);
    // Waits for an event of the source whose text contains `text`. Every event of a source is
    // looked at once: the search begins after the source's last one found, or after `Mark`.
    std::optional<Event> Await(Source source, const std::string& text, double seconds);
    // Takes in everything up to now and lets `Await` begin behind it.
    void Mark();
    // Adds an event of the simulator's own.
    void Note(const std::string& text) { Add({0, Source::kSimulator, -1, false, text}); }

    const std::vector<Event>& Events() const { return events_; }
    double Seconds() const;
    // The machine's path of a file inside; absolute symbolic links inside do not resolve.
    std::string Path(const std::string& inside) const;
    // The processes inside with this command name; all of them for "".
    std::vector<Process> Processes(const std::string& name = "") const;
    const StandInWatchdog& Watchdog() const { return watchdog_; }
    const TerminalOptions& Options() const { return options_; }
    bool OnBackupPartition() const { return onBackupPartition_; }

private:
    bool Boot(std::string* reason);
    void PowerOff();
    void Bite();
    void TakeDatagrams();
    void TakeReport(const std::string& report);
    void TakeWrite(const std::string& write);
    void TakeTime();
    void Add(Event event);
    CommandResult Inside(const std::function<int()>& work);

    TerminalOptions options_;
    Listener listener_;
    std::chrono::steady_clock::time_point start_;
    std::vector<Event> events_;
    // For each source, the first event that `Await` has not looked at.
    std::map<Source, size_t> next_;
    StandInWatchdog watchdog_;
    std::vector<std::string> monitorArguments_;
    bool onBackupPartition_ = false;
    pid_t init_ = -1;
    int syslog_ = -1;
};

}  // namespace Simulator
