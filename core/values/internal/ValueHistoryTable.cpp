#include "core/values/internal/ValueHistoryTable.h"

#include <algorithm>
#include <ctime>
#include <functional>

#include "core/output/StringWritable.h"
#include "core/text/FormatText.h"

namespace Quenda {

namespace {

using Sample = ValueList::History::Sample;

constexpr char kMissing[] = "-";
constexpr size_t kMinColumnWidth = 12;  // columns

int ColumnWidth(const std::string& head) {
    return static_cast<int>(std::max(head.size(), kMinColumnWidth));
}

// Each heading is the prefix and the key.
void PrintHeader(Writable* out, const ValueKeys& keys, const char* prefix) {
    out->Printf("#%26s ", "Time");
    for (const char* key : keys) {
        const std::string head = std::string(prefix) + key;
        out->Printf(", %*s ", ColumnWidth(head), head.c_str());
    }
    out->Puts("\n");
}

// `cell` returns the text for a key.
void PrintRow(Writable* out, const WallTime& time, const ValueKeys& keys, const char* prefix,
              const std::function<std::string(const char*)>& cell) {
    out->Printf(" %26s ", SampleTimeText(time).c_str());
    for (const char* key : keys) {
        out->Printf(", %*s ", ColumnWidth(std::string(prefix) + key), cell(key).c_str());
    }
    out->Puts("\n");
}

// A line end follows a text value, on purpose: PrintValue adds it.
std::string ValueCell(const Sample& sample, const char* key) {
    const ValueEntry* value = sample.Find(key);
    if (value == nullptr) {
        return kMissing;
    }
    StringWritable text;
    value->PrintValue(&text);
    return text.Text();
}

double MillisecondsBetween(const WallTime& earlier, const WallTime& later) {
    return static_cast<double>(later.seconds - earlier.seconds) * 1000.0 +
           static_cast<double>(later.microseconds - earlier.microseconds) / 1000.0;
}

std::string DeltaCell(const Sample& earlier, const Sample& later, const char* key, bool perSecond) {
    const ValueEntry* before = earlier.Find(key);
    const ValueEntry* after = later.Find(key);
    if (after == nullptr) {  // all samples have the same values
        return kMissing;
    }
    const double change = after->AsDouble() - before->AsDouble();
    if (!perSecond) {
        return FormatText("%.2f", change);
    }
    const double elapsedMs = MillisecondsBetween(earlier.time, later.time);
    return elapsedMs > 0.0 ? FormatText("%.2f", change / elapsedMs * 1000.0) : "no time";
}

}  // namespace

std::string SampleTimeText(const WallTime& time) {
    const long milliseconds = (time.microseconds + 500L) / 1000;
    // Rounding up may reach the next second.
    const auto seconds = static_cast<time_t>(time.seconds + milliseconds / 1000);
    struct tm local {};
    char text[64] = "";
    if (localtime_r(&seconds, &local) != nullptr) {
        (void)std::strftime(text, sizeof(text), "%F %T", &local);
    }
    return FormatText("%s.%03ld", text, milliseconds % 1000);
}

void PrintSamples(Writable* out, const ValueSamples& samples) {
    for (const Sample& sample : samples) {
        out->Printf("\n---- %s ----\n", SampleTimeText(sample.time).c_str());
        for (const ValueEntry& entry : sample.values) {
            entry.Print(out);
        }
    }
}

void PrintSampleTable(Writable* out, const ValueSamples& samples, const ValueKeys& keys) {
    PrintHeader(out, keys, "");
    for (const Sample& sample : samples) {
        PrintRow(out, sample.time, keys, "",
                 [&sample](const char* key) { return ValueCell(sample, key); });
    }
}

void PrintDeltaTable(Writable* out, const ValueSamples& samples, const ValueKeys& keys,
                     bool perSecond) {
    if (keys.empty()) {
        out->Puts("Please provide one or more key names to display.\n");
        return;
    }
    if (samples.size() < 2) {
        out->Puts(
            "Not enough data to display. Need at least two rows.\n"
            "Use 'snapshot', 'capture', or 'periodic' commands to capture.\n");
        return;
    }
    const char* prefix = perSecond ? "d_" : "delta_";
    PrintHeader(out, keys, prefix);
    for (size_t i = 1; i < samples.size(); ++i) {
        const Sample& earlier = samples[i - 1];
        const Sample& later = samples[i];
        PrintRow(out, later.time, keys, prefix,
                 [&](const char* key) { return DeltaCell(earlier, later, key, perSecond); });
    }
}

}  // namespace Quenda
