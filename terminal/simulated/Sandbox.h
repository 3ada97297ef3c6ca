#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace Terminals::Simulated {

// The namespaces of a terminal, made by bubblewrap: its own root file system and process table.
// They and all processes in them end with this object or with its process.
class Sandbox {
public:
    Sandbox() = default;
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;
    ~Sandbox() { Close(); }

    // Runs the command `boot` and returns when the first process inside runs. False, with the
    // reason, if it does not.
    bool Open(const std::vector<std::string>& boot, std::string* reason);
    // Kills everything inside and waits for its end.
    void Close();

    // Starts a command inside, as root; its standard output and error go to `output`. Returns the
    // PID of a process of the host that ends with the same status, or -1.
    pid_t Start(const std::vector<std::string>& command, int output) const;
    // The path on the host of a file inside; it does not follow absolute symbolic links inside.
    std::string Path(const std::string& inside) const;

private:
    pid_t bubblewrap_ = -1;
    pid_t first_ = -1;  // process 1 inside, by its PID on the host
};

}  // namespace Terminals::Simulated
