#pragma once

#include <sys/types.h>

#include <string>

// A command name that no test running at the same time uses. `prefix`: 8 bytes at most.
std::string OwnName(const std::string& prefix);

// A child process that has the given command name (15 bytes at most) and does nothing. The
// destructor ends it if it still runs.
class NamedProcess {
public:
    explicit NamedProcess(const std::string& name);
    NamedProcess(const NamedProcess&) = delete;
    NamedProcess& operator=(const NamedProcess&) = delete;
    ~NamedProcess();

    pid_t Pid() const { return pid_; }
    // Waits for its end and returns the signal that ended it, 0 for an exit.
    int Wait();

private:
    pid_t pid_;
};
