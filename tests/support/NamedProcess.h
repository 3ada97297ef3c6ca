#pragma once

#include <sys/types.h>

#include <string>

// A command name that no test running at the same time uses. `prefix`: 8 bytes at most.
std::string OwnName(const std::string& prefix);

// A child process with a command name of its own (15 bytes at most) that does nothing until it is
// ended; it is, at the latest, by the destructor.
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
