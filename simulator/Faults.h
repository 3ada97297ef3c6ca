#pragma once

#include <string>

#include "simulator/Terminal.h"

namespace Simulator {

enum class KeldraFault { kHang, kCrash, kError, kShortFile, kMissingFile, kIgnoreQuit };

// Makes the running Keldra misbehave; a Keldra that is started later is well again. The user's
// own program can only be stopped (for a hang) and killed (for a crash). Returns "" or the reason
// why the fault could not be caused.
std::string Cause(Terminal* terminal, KeldraFault fault);

// Kills every sshd. Returns "" or the reason.
std::string KillSshd(Terminal* terminal);

// Lasting until `Repair`: no Keldra can be started; the stand-in then exits with status 3.
void RefuseToStart(Terminal* terminal);
// Lasting until `Repair`: the stand-in does not start with the primary options file.
void DamagePrimaryOptions(Terminal* terminal);
// Ends what lasts.
void Repair(Terminal* terminal);

}  // namespace Simulator
