#pragma once

#include <string>

#include "terminal/Terminal.h"

namespace Terminals {

// Each of these returns "" or the reason why it could not be done.

// Makes the running Keldra misbehave: "hang", "crash", "error", "short" (heartbeat file),
// "missing" (heartbeat file), "ignore" (SIGQUIT). A Keldra that is started later is well again.
// The user's own program can only be stopped (for a hang) and killed (for a crash).
std::string Cause(Terminal* terminal, const std::string& fault);
// Kills every sshd.
std::string KillSshd(Terminal* terminal);

// Lasting until `Repair`: no Keldra can be started; the stand-in then exits with status 3.
std::string RefuseToStart(Terminal* terminal);
// Lasting until `Repair`: the stand-in does not start with the primary options file.
std::string DamagePrimaryOptions(Terminal* terminal);
// Ends what lasts.
std::string Repair(Terminal* terminal);

}  // namespace Terminals
