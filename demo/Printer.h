#pragma once

#include <string>

#include "terminal/Terminal.h"

namespace Demo {

// These functions print line by line. On a terminal they use colours and its width, from 60 to 100
// columns. In a pipe they print plain text of 100 columns.

enum class Colour { kPlain, kDim, kBold, kRed, kGreen, kYellow, kBlue, kMagenta, kCyan };

// Prints nothing for a routine event.
void PrintEvent(const Terminals::Event& event);
void PrintHeading(const std::string& text);
// Prints the output of a program, indented.
void PrintQuote(const std::string& text);
void PrintLine(const std::string& text, Colour colour = Colour::kPlain);
// The text in that colour, for a part of a line.
std::string In(Colour colour, const std::string& text);
size_t PageWidth();

}  // namespace Demo
