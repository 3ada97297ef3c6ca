#include "simulator/demo/ResultTable.h"

#include <cstdio>
#include <fstream>

namespace Simulator {
namespace {

constexpr char kRow[] = "%-16s %-34s %-26s %9s %11s";

std::string Time(double seconds, unsigned period) {
    if (seconds < 0) {
        return "-";
    }
    char text[32];
    (void)snprintf(text, sizeof(text), "%.1fs/%.1fp", seconds, seconds / period);
    return text;
}

std::string Row(const char* name, const char* expected, const char* seen, const char* detect,
                const char* recover) {
    char text[256];
    (void)snprintf(text, sizeof(text), kRow, name, expected, seen, detect, recover);
    return text;
}

}  // namespace

void PrintTable(const Printer& printer, const std::vector<Situation>& situations, unsigned period) {
    printer.Line(Row("situation", "expected", "seen", "detect", "recover"), Colour::kBold);
    printer.Line(std::string(100, '-'), Colour::kDim);
    for (const Situation& s : situations) {
        const Colour colour = s.passed ? Colour::kGreen : Colour::kRed;
        printer.Line(
            Row(s.name.c_str(), s.expected.c_str(), s.seen.c_str(),
                Time(s.detectSeconds, period).c_str(), Time(s.recoverSeconds, period).c_str()),
            s.skipped ? Colour::kYellow : colour);
    }
    printer.Line("times from the fault: s seconds, p heartbeat periods", Colour::kDim);
}

bool WriteTimes(const std::string& path, const std::vector<Situation>& situations,
                unsigned period) {
    std::ofstream file(path);
    file << "situation\tresult\tdetect_seconds\trecover_seconds\theartbeat_seconds\n";
    for (const Situation& s : situations) {
        const char* passed = s.passed ? "passed" : "failed";
        file << s.name << '\t' << (s.skipped ? "skipped" : passed) << '\t';
        file << (s.detectSeconds < 0 ? "-" : std::to_string(s.detectSeconds)) << '\t';
        file << (s.recoverSeconds < 0 ? "-" : std::to_string(s.recoverSeconds)) << '\t';
        file << period << '\n';
    }
    return file.good();
}

}  // namespace Simulator
