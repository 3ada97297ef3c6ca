#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Simulator {

// A root file system in memory with processes of its own, made by bubblewrap: the machine's
// programs and libraries can be read in it, everything else is the terminal's. It dies with this
// object or with the process that has it, and everything in it with it.
class Sandbox {
public:
    Sandbox() = default;
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;
    ~Sandbox() { Close(); }

    // Process 1 runs the program `firstProcess`. The service scripts and settings of a package
    // that is unpacked in `package`, unless that is empty, cover the machine's. False with the
    // reason, and what could be done about it, when the machine permits no such thing.
    bool Open(const std::string& firstProcess, const std::string& package, std::string* reason);
    // Kills everything inside and waits for its end.
    void Close();

    // The command line that runs a command inside, by nsenter, as root.
    std::vector<std::string> Enter(const std::vector<std::string>& command) const;
    // The machine's path of a file inside; absolute symbolic links inside do not resolve.
    std::string Path(const std::string& inside) const;

private:
    pid_t bubblewrap_ = -1;
    pid_t first_ = -1;  // process 1 inside, by the machine's number
};

}  // namespace Simulator
