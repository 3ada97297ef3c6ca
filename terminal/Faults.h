#pragma once

#include <string>

#include "terminal/Terminal.h"

namespace Terminals {

// Each function returns "", or the reason for which it failed.

// Makes the running Keldra misbehave: "hang", "crash", "error", "short" (heartbeat file),
// "missing" (heartbeat file), "ignore" (SIGQUIT). The next Keldra that is started works again.
// The user's own program can only be stopped ("hang") and killed ("crash").
std::string Cause(Terminal* terminal, const std::string& fault);
// Kills every sshd.
std::string KillSshd(Terminal* terminal);

// Until `Repair`, no Keldra can be started; the stand-in exits with status 3.
std::string RefuseToStart(Terminal* terminal);
// Until `Repair`, the stand-in does not start with the primary options file.
std::string DamagePrimaryOptions(Terminal* terminal);
// Ends both.
std::string Repair(Terminal* terminal);

}  // namespace Terminals
