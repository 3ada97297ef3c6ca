#include "demo/ResultTable.h"

#include <cstdio>
#include <fstream>
#include <iomanip>
#include <sstream>

namespace Demo {
namespace {

constexpr size_t kWidthWithExpected = 96;

std::string Time(double seconds, unsigned period) {
    char text[32] = "-";
    if (seconds >= 0) {
        (void)snprintf(text, sizeof(text), "%.*fs/%.1fp", seconds < 1000 ? 1 : 0, seconds,
                       seconds / period);
    }
    return text;
}

Colour ColourOf(const std::string& result) {
    if (result == "skipped") {
        return Colour::kYellow;
    }
    return result == "passed" ? Colour::kGreen : Colour::kRed;
}

}  // namespace

void PrintTable(const Printer& printer, const std::vector<Situation>& situations, unsigned period) {
    const auto row = [&](const std::string& name, const std::string& expected,
                         const std::string& seen, const std::string& detect,
                         const std::string& recover) {
        std::ostringstream line;
        line << std::left << std::setw(17) << name;
        if (printer.Width() >= kWidthWithExpected) {
            line << std::setw(35) << expected;
        }
        line << std::setw(19) << seen << std::right << ' ' << std::setw(11) << detect << ' '
             << std::setw(12) << recover;
        return line.str();
    };
    printer.Line(row("situation", "expected", "seen", "detect", "recover"), Colour::kBold);
    for (const Situation& s : situations) {
        printer.Line(row(s.name, s.expected, s.seen, Time(s.detectSeconds, period),
                         Time(s.recoverSeconds, period)),
                     ColourOf(s.result));
    }
    printer.Line("times from the fault: s seconds, p heartbeat periods", Colour::kDim);
}

bool WriteTimes(const std::string& path, const std::vector<Situation>& situations,
                unsigned period) {
    std::ofstream file(path);
    file << "situation\tresult\tdetect_seconds\trecover_seconds\theartbeat_seconds\n";
    for (const Situation& s : situations) {
        file << s.name << '\t' << s.result << '\t';
        file << (s.detectSeconds < 0 ? "-" : std::to_string(s.detectSeconds)) << '\t';
        file << (s.recoverSeconds < 0 ? "-" : std::to_string(s.recoverSeconds)) << '\t';
        file << period << '\n';
    }
    return file.good();
}

}  // namespace Demo
