#pragma once

#include <string>

#include "terminal/Terminal.h"

namespace Demo {

enum class Colour { kPlain, kDim, kBold, kRed, kGreen, kYellow, kBlue, kMagenta, kCyan };

// Shows what happens, line by line as it comes: in colours and as wide as the terminal, from 60
// columns on; as plain text of 100 columns in a pipe.
class Printer {
public:
    Printer();

    // Events that repeat all the time are left out.
    void Show(const Terminals::Event& event) const;
    void Heading(const std::string& text) const;
    // Indented text of any number of lines, as a program printed it.
    void Quote(const std::string& text) const;
    void Line(const std::string& text, Colour colour = Colour::kPlain) const;
    // The text in the colour, for a part of a line.
    std::string In(Colour colour, const std::string& text) const;
    size_t Width() const;

private:
    bool colours_;
};

}  // namespace Demo
