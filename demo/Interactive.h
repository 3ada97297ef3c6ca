#pragma once

#include "demo/Printer.h"
#include "terminal/Terminal.h"

namespace Simulator {

// Lets the user cause each fault, by single keys on a terminal and by lines from a pipe, until
// he quits or the input ends.
void RunInteractive(Terminal* terminal, const Printer& printer);

}  // namespace Simulator
