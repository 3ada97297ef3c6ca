#pragma once

#include "demo/Printer.h"
#include "terminal/Terminal.h"

namespace Demo {

// Lets the user cause each fault, by single keys on a terminal and by lines from a pipe, until
// he quits or the input ends.
void RunInteractive(Terminals::Terminal* terminal, const Printer& printer);

}  // namespace Demo
