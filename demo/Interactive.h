#pragma once

#include "demo/Printer.h"
#include "terminal/Terminal.h"

namespace Demo {

// Lets the user cause each fault, by single keys on a terminal and by lines from a pipe, until a
// "quit" or the end of the input. False if a line from a pipe could not be obeyed.
bool RunInteractive(Terminals::Terminal* terminal, const Printer& printer);

}  // namespace Demo
