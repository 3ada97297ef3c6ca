#include "simulator/demo/Printer.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace Simulator {
namespace {

constexpr size_t kWidth = 100;
constexpr size_t kTextColumn = 22;

struct SourceStyle {
    Source source;
    const char* name;
    Colour colour;
};

constexpr SourceStyle kStyles[] = {
    {Source::kLog, "log", Colour::kPlain},      {Source::kSimulator, "simulator", Colour::kMagenta},
    {Source::kKeldra, "Keldra", Colour::kBlue}, {Source::kSshd, "sshd", Colour::kBlue},
    {Source::kLed, "LED", Colour::kRed},        {Source::kWatchdog, "watchdog", Colour::kCyan},
    {Source::kInit, "init", Colour::kDim},
};

// Log lines that a reader looks for, by what they contain.
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

// The text, broken at blanks so that it stays within the width behind its column.
std::string Wrap(const std::string& text) {
    std::string result;
    std::istringstream words(text);
    std::string word;
    size_t column = kTextColumn;
    while (words >> word) {
        if (column > kTextColumn && column + 1 + word.size() > kWidth) {
            result += "\n" + std::string(kTextColumn, ' ');
            column = kTextColumn;
        } else if (column > kTextColumn) {
            result += " ";
            ++column;
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

std::string Printer::In(Colour colour, const std::string& text) const {
    static constexpr const char* kCodes[] = {"", "2", "1", "31", "32", "33", "34", "35", "36"};
    const char* code = kCodes[static_cast<int>(colour)];
    return colours_ && *code != '\0' ? std::string("\x1b[") + code + "m" + text + "\x1b[0m" : text;
}

void Printer::Show(const Event& event) const {
    if (event.routine) {
        return;
    }
    for (const SourceStyle& style : kStyles) {
        if (style.source == event.source) {
            char time[16];
            char name[16];
            (void)snprintf(time, sizeof(time), "%8.2f", event.seconds);
            (void)snprintf(name, sizeof(name), "  %-10s", style.name);
            printf("%s%s  %s\n", In(Colour::kDim, time).c_str(), In(style.colour, name).c_str(),
                   In(ColourOf(event.text, style.colour), Wrap(event.text)).c_str());
        }
    }
}

void Printer::Heading(const std::string& text) const {
    const size_t rest = kWidth > text.size() + 5 ? kWidth - text.size() - 5 : 0;
    Line("");
    Line("--- " + text + " " + std::string(rest, '-'), Colour::kBold);
}

void Printer::Quote(const std::string& text) const {
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        Line(std::string(line.empty() ? 0 : kTextColumn, ' ') + line, Colour::kDim);
    }
}

void Printer::Line(const std::string& text, Colour colour) const {
    printf("%s\n", In(text.empty() ? Colour::kPlain : colour, text).c_str());
}

}  // namespace Simulator
