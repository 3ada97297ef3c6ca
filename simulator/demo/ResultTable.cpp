#include "simulator/demo/ResultTable.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>

namespace Simulator {
namespace {

using Row = std::array<std::string, 5>;
constexpr size_t kExpected = 1;

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
    std::vector<Row> rows = {{"situation", "expected", "seen", "detect", "recover"}};
    for (const Situation& s : situations) {
        rows.push_back({s.name, s.expected, s.seen, Time(s.detectSeconds, period),
                        Time(s.recoverSeconds, period)});
    }
    std::array<size_t, 5> widths = {};
    size_t total = widths.size() - 1;
    for (size_t column = 0; column < widths.size(); ++column) {
        for (const Row& row : rows) {
            widths[column] = std::max(widths[column], row[column].size());
        }
        total += widths[column];
    }
    const bool narrow = total > printer.Width();
    for (size_t i = 0; i < rows.size(); ++i) {
        std::string line;
        for (size_t column = 0; column < widths.size(); ++column) {
            if (!narrow || column != kExpected) {
                const std::string rest(widths[column] - rows[i][column].size(), ' ');
                line += (column > 0 ? " " : "") +
                        (column < 3 ? rows[i][column] + rest : rest + rows[i][column]);
            }
        }
        printer.Line(line, i == 0 ? Colour::kBold : ColourOf(situations[i - 1].result));
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

}  // namespace Simulator
