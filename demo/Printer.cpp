#include "demo/Printer.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace Demo {
namespace {

using Terminals::Source;

constexpr size_t kNarrowest = 60;
constexpr size_t kWidest = 100;
constexpr size_t kTextColumn = 22;

constexpr struct {
    Source source;
    const char* name;
    Colour colour;
} kStyles[] = {
    {Source::kLog, "log", Colour::kPlain},      {Source::kSimulator, "simulator", Colour::kMagenta},
    {Source::kKeldra, "Keldra", Colour::kBlue}, {Source::kSshd, "sshd", Colour::kBlue},
    {Source::kLed, "LED", Colour::kRed},        {Source::kWatchdog, "watchdog", Colour::kCyan},
    {Source::kInit, "init", Colour::kDim},
};

// Parts of the lines that a reader looks for.
constexpr struct {
    const char* part;
    Colour colour;
} kNotable[] = {
    {"Strike ", Colour::kYellow},          {"started responding again", Colour::kGreen},
    {"Maximum consecutive", Colour::kRed}, {"BITES", Colour::kRed},
    {"failed to start", Colour::kRed},
};

Colour ColourOf(const std::string& text, Colour usual) {
    for (const auto& notable : kNotable) {
        if (text.find(notable.part) != std::string::npos) {
            return notable.colour;
        }
    }
    return usual;
}

// Breaks the text at blanks, and within words that are too long, so that it fits between its column
// and the width.
std::string Wrap(const std::string& text, size_t width) {
    std::string result;
    std::istringstream words(text);
    std::string word;
    size_t column = kTextColumn;
    while (words >> word) {
        if (column > kTextColumn && column + 1 + word.size() > width) {
            result += "\n" + std::string(kTextColumn, ' ');
            column = kTextColumn;
        } else if (column > kTextColumn) {
            result += " ";
            ++column;
        }
        for (; column + word.size() > width; word.erase(0, width - column)) {
            result += word.substr(0, width - column) + "\n" + std::string(kTextColumn, ' ');
            column = kTextColumn;
        }
        result += word;
        column += word.size();
    }
    return result;
}

}  // namespace

Printer::Printer() {
    const char* kind = getenv("TERM");
    colours_ = isatty(STDOUT_FILENO) != 0 && kind != nullptr && strcmp(kind, "dumb") != 0 &&
               getenv("NO_COLOR") == nullptr;
    (void)setvbuf(stdout, nullptr, _IOLBF, 0);
}

size_t Printer::Width() const {
    winsize size = {};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? std::clamp<size_t>(size.ws_col, kNarrowest, kWidest) : kWidest;
}

std::string Printer::In(Colour colour, const std::string& text) const {
    // These of the 256 colours have about the same contrast on black and on white.
    static constexpr const char* kCodes[] = {
        "", "38;5;243", "1", "38;5;196", "38;5;28", "38;5;130", "38;5;63", "38;5;164", "38;5;30"};
    const char* code = kCodes[static_cast<int>(colour)];
    return colours_ && *code != '\0' ? std::string("\x1b[") + code + "m" + text + "\x1b[0m" : text;
}

void Printer::Show(const Terminals::Event& event) const {
    for (const auto& style : kStyles) {
        if (style.source == event.source && !event.routine) {
            char time[16];
            char name[16];
            (void)snprintf(time, sizeof(time), "%8.2f", event.seconds);
            (void)snprintf(name, sizeof(name), "  %-10s", style.name);
            Line(In(Colour::kDim, time) + In(style.colour, name) + "  " +
                 In(ColourOf(event.text, style.colour), Wrap(event.text, Width())));
        }
    }
}

void Printer::Heading(const std::string& text) const {
    const size_t used = std::min(text.size() + 5, Width());
    Line("");
    Line("--- " + text + " " + std::string(Width() - used, '-'), Colour::kBold);
}

void Printer::Quote(const std::string& text) const {
    const size_t indent = Width() < 80 ? 2 : kTextColumn;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        Line(std::string(line.empty() ? 0 : indent, ' ') + line, Colour::kDim);
    }
}

void Printer::Line(const std::string& text, Colour colour) const {
    printf("%s\n", In(text.empty() ? Colour::kPlain : colour, text).c_str());
}

}  // namespace Demo
