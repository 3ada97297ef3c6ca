#include "demo/ResultTable.h"

#include <cstdio>
#include <fstream>

#include "demo/Printer.h"

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

void PrintRow(const Scene& scene, const std::string& detect, const std::string& recover,
              Colour colour) {
    const bool isWide = PageWidth() >= kWidthWithExpected;
    char row[160];
    (void)snprintf(row, sizeof(row), "%-17s%-*s%-19s %11s %12s", scene.name.c_str(),
                   isWide ? 35 : 0, isWide ? scene.expected.c_str() : "", scene.seen.c_str(),
                   detect.c_str(), recover.c_str());
    PrintLine(row, colour);
}

Colour ColourOf(const std::string& result) {
    if (result == "skipped") {
        return Colour::kYellow;
    }
    return result == "passed" ? Colour::kGreen : Colour::kRed;
}

}  // namespace

void PrintTable(const std::vector<Scene>& scenes, unsigned period) {
    PrintRow({"situation", "expected", "seen"}, "detect", "recover", Colour::kBold);
    for (const Scene& scene : scenes) {
        if (scene.result != nullptr) {
            PrintRow(scene, Time(scene.detectSeconds, period), Time(scene.recoverSeconds, period),
                     ColourOf(scene.result));
        }
    }
    PrintLine("times from the fault: s seconds, p heartbeat periods", Colour::kDim);
}

bool WriteTimes(const std::string& path, const std::vector<Scene>& scenes, unsigned period) {
    const auto number = [](double seconds) { return seconds < 0 ? "-" : std::to_string(seconds); };
    std::ofstream file(path);
    file << "situation\tresult\tdetect_seconds\trecover_seconds\theartbeat_seconds\n";
    for (const Scene& scene : scenes) {
        if (scene.result != nullptr) {
            file << scene.name << '\t' << scene.result << '\t' << number(scene.detectSeconds)
                 << '\t' << number(scene.recoverSeconds) << '\t' << period << '\n';
        }
    }
    return file.good();
}

}  // namespace Demo
