#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Terminals::Simulated {

// The namespaces of a terminal: a root file system and processes of its own, made by bubblewrap.
// They end with this object or with the process that has it, and everything in them with them.
class Sandbox {
public:
    Sandbox() = default;
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;
    ~Sandbox() { Close(); }

    // Runs the script `boot` and returns when the first process inside runs. False with the
    // reason when it does not.
    bool Open(const std::vector<std::string>& boot, std::string* reason);
    // Kills everything inside and waits for its end.
    void Close();

    // Starts a command inside, as root, with its standard output and error going to `output`.
    // Returns the PID of a process of the machine that ends as the command does, or -1.
    pid_t Start(const std::vector<std::string>& command, int output) const;
    // The machine's path of a file inside; absolute symbolic links inside do not resolve.
    std::string Path(const std::string& inside) const;

private:
    pid_t bubblewrap_ = -1;
    pid_t first_ = -1;  // process 1 inside, by the machine's number
};

}  // namespace Terminals::Simulated
