#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

namespace Simulator {

// Starts `firstProcess` as process 1 of mount and PID namespaces of its own, and of a user
// namespace in which the caller is root where the machine grants the others only so. It dies
// with the caller, and everything in its namespaces with it. Must be called from a process with
// one thread. Returns its PID, or -1 and the reason.
pid_t CloneIntoNamespaces(const std::function<void()>& firstProcess, std::string* reason);

// Moves the calling process into the namespaces of process `pid`; only children that it forks
// afterwards live in the PID namespace. False with errno set when the kernel refuses.
bool JoinNamespaces(pid_t pid);

// Whether this machine lets the caller make such namespaces, mounts included; else the reason
// and what could be done about it.
bool NamespacesPermitted(std::string* reason);

}  // namespace Simulator
