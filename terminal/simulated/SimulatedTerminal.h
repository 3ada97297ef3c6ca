#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "terminal/Terminal.h"
#include "terminal/simulated/Sandbox.h"
#include "terminal/simulated/StandInWatchdog.h"

namespace Terminals::Simulated {

// The parts of a simulated terminal that are not as usual; all paths are paths on the host.
struct TerminalOptions {
    // An unpacked package of the daemon, or "". Its program replaces the one of this build, and its
    // /etc/init.d and /etc/default replace those of the host.
    std::string packageDirectory;
    std::string keldraProgram;    // empty for the stand-in
    std::string redirectLibrary;  // empty for the one that reports every write
};

// A process inside, with the PIDs that are seen inside.
struct Process {
    pid_t pid = 0;
    pid_t parent = 0;
    char state = '?';  // the kernel's letter: R, S, T (stopped), Z (zombie) ...
    std::string name;  // the kernel's command name
};

// A terminal in namespaces of the host. It has a root file system in memory, a process table, a
// syslog and a hardware watchdog. Everything ends with this object or with its process.
class SimulatedTerminal : public Terminal {
public:
    // Copies all programs: a build must not change them before the next boot.
    explicit SimulatedTerminal(TerminalOptions options = {});
    ~SimulatedTerminal() override;

    CommandResult Run(const std::string& script) override;
    bool Pump(int timeoutMs, int input = -1) override;
    std::string MonitorCommand() const override;
    bool HasStandInKeldra() const override { return options_.keldraProgram.empty(); }
    std::string Description() override { return "namespaces of this host"; }

    bool Signal(pid_t pid, int signal);
    // The path on the host of a file inside; it does not follow absolute symbolic links inside.
    std::string Path(const std::string& inside) const { return sandbox_.Path(inside); }
    // The processes inside with this command name, or all for "", sorted by PID.
    std::vector<Process> Processes(const std::string& name = "") const;

private:
    bool Boot(std::string* reason) override;
    void Keep(const std::string& path);
    bool BindSyslog(std::string* reason);
    void PowerOff();

    TerminalOptions options_;
    std::vector<int> kept_;  // copies in memory: `boot` and the files for it, in order
    Sandbox sandbox_;
    StandInWatchdog watchdog_;
    int syslog_ = -1;
};

}  // namespace Terminals::Simulated
