#pragma once

#include <string>

#include "terminal/Terminal.h"

namespace Demo {

enum class Colour { kPlain, kDim, kBold, kRed, kGreen, kYellow, kBlue, kMagenta, kCyan };

// Prints events line by line. On a terminal it uses colours and its width, from 60 to 100 columns.
// In a pipe it prints plain text of 100 columns.
class Printer {
public:
    Printer();

    // Prints nothing for a routine event.
    void Show(const Terminals::Event& event) const;
    void Heading(const std::string& text) const;
    // Prints the output of a program, indented.
    void Quote(const std::string& text) const;
    void Line(const std::string& text, Colour colour = Colour::kPlain) const;
    // The text in that colour, for a part of a line.
    std::string In(Colour colour, const std::string& text) const;
    size_t Width() const;

private:
    bool colours_;
};

}  // namespace Demo
