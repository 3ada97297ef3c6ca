#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "terminal/Terminal.h"
#include "terminal/TerminalLayout.h"
#include "terminal/simulated/Sandbox.h"
#include "terminal/simulated/StandInWatchdog.h"

namespace Terminals::Simulated {

// What the simulated terminal is made of; paths are the machine's.
struct TerminalOptions {
    std::string monitorProgram;  // the daemon
    // A package of the daemon, unpacked: its program is used in place of monitorProgram, and its
    // /etc/init.d and /etc/default instead of the machine's. Empty for none.
    std::string packageDirectory;
    std::string standInDirectory;  // the programs and scripts that stand in for the terminal's
    std::string keldraProgram;     // empty for the stand-in
    std::string redirectLibrary;   // empty for the one among the stand-ins
};

// A process inside, as its first process sees it.
struct Process {
    pid_t pid = 0;
    pid_t parent = 0;
    char state = '?';  // the kernel's letter: R, S, T (stopped), Z (zombie) ...
    std::string name;  // the kernel's command name
};

// A terminal in namespaces of the machine: its root file system in memory, its processes, its
// syslog and its hardware watchdog. Everything ends with this object, or with the process that
// has it.
class SimulatedTerminal : public Terminal {
public:
    // Keeps the programs as they are now: a build in between must not change the next boot.
    explicit SimulatedTerminal(TerminalOptions options);
    ~SimulatedTerminal() override;

    CommandResult Run(const std::vector<std::string>& command) override;
    bool Pump(int timeoutMs, int input = -1) override;
    std::vector<std::string> MonitorCommand(
        const std::vector<std::string>& arguments) const override;
    bool HasStandInKeldra() const override { return options_.keldraProgram.empty(); }
    std::string Description() const override { return "namespaces of this machine"; }

    bool Signal(pid_t pid, int signal);
    // The machine's path of a file inside; absolute symbolic links inside do not resolve.
    std::string Path(const std::string& inside) const { return sandbox_.Path(inside); }
    // The processes inside with this command name, by rising PID; all of them for "".
    std::vector<Process> Processes(const std::string& name = "") const;
    const StandInWatchdog& Watchdog() const { return watchdog_; }

private:
    bool Boot(std::string* reason) override;
    void TakeWatchdog(const std::string& text) override;
    void Keep(const std::string& path);
    bool BindSyslog(std::string* reason);
    void TakeTime();
    void PowerOff();

    TerminalOptions options_;
    std::vector<int> kept_;  // copies in memory, in the order of the arguments of `boot`
    Sandbox sandbox_;
    StandInWatchdog watchdog_;
    int syslog_ = -1;
};

// Writes a file inside anew; false when it cannot.
bool WriteInside(const SimulatedTerminal& terminal, const std::string& path,
                 const std::string& content);

}  // namespace Terminals::Simulated
