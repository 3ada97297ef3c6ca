#pragma once

#include "simulator/Terminal.h"
#include "simulator/demo/Printer.h"

namespace Simulator {

// Lets the user cause each fault, by single keys on a terminal and by lines from a pipe, until
// he quits or the input ends.
void RunInteractive(Terminal* terminal, const Printer& printer);

}  // namespace Simulator
