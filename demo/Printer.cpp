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
// and the width of the page.
std::string Wrap(std::string text) {
    const size_t room = PageWidth() - kTextColumn;
    std::string result;
    while (text.size() > room) {
        const size_t blank = text.rfind(' ', room);
        const size_t end = blank == std::string::npos ? room : blank;
        result += text.substr(0, end) + "\n" + std::string(kTextColumn, ' ');
        text.erase(0, blank == std::string::npos ? end : end + 1);
    }
    return result + text;
}

}  // namespace

size_t PageWidth() {
    winsize size = {};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? std::clamp<size_t>(size.ws_col, kNarrowest, kWidest) : kWidest;
}

std::string In(Colour colour, const std::string& text) {
    // These of the 256 colours have about the same contrast on black and on white.
    static constexpr const char* kCodes[] = {
        "", "38;5;243", "1", "38;5;196", "38;5;28", "38;5;130", "38;5;63", "38;5;164", "38;5;30"};
    const char* const code = kCodes[static_cast<int>(colour)];
    const char* const kind = getenv("TERM");
    const bool hasColours = isatty(STDOUT_FILENO) != 0 && kind != nullptr &&
                            strcmp(kind, "dumb") != 0 && getenv("NO_COLOR") == nullptr;
    return hasColours && *code != '\0' ? std::string("\x1b[") + code + "m" + text + "\x1b[0m"
                                       : text;
}

void PrintEvent(const Terminals::Event& event) {
    for (const auto& style : kStyles) {
        if (style.source == event.source && !event.routine) {
            char time[16];
            char name[16];
            (void)snprintf(time, sizeof(time), "%8.2f", event.seconds);
            (void)snprintf(name, sizeof(name), "  %-10s", style.name);
            PrintLine(In(Colour::kDim, time) + In(style.colour, name) + "  " +
                      In(ColourOf(event.text, style.colour), Wrap(event.text)));
        }
    }
}

void PrintHeading(const std::string& text) {
    const size_t used = std::min(text.size() + 5, PageWidth());
    PrintLine("");
    PrintLine("--- " + text + " " + std::string(PageWidth() - used, '-'), Colour::kBold);
}

void PrintQuote(const std::string& text) {
    const size_t indent = PageWidth() < 80 ? 2 : kTextColumn;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        PrintLine(std::string(line.empty() ? 0 : indent, ' ') + line, Colour::kDim);
    }
}

void PrintLine(const std::string& text, Colour colour) {
    printf("%s\n", In(text.empty() ? Colour::kPlain : colour, text).c_str());
    (void)fflush(stdout);
}

}  // namespace Demo
