#pragma once

#include "terminal/Terminal.h"

namespace Demo {

// Carries out the user's commands, single keys on a terminal or lines from a pipe, until "quit" or
// the end of the input. False if a line from a pipe failed.
bool RunInteractive(Terminals::Terminal* terminal);

}  // namespace Demo
