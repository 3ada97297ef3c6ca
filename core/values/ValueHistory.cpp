#include "core/values/ValueHistory.h"

#include <strings.h>

#include <algorithm>
#include <cstddef>

#include "core/numbers/TargetNumbers.h"
#include "core/values/internal/ValueHistoryTable.h"

namespace Quenda {

namespace {

constexpr int32_t kMinPeriodicMs = 10;
constexpr int32_t kMinCaptureMs = 50;
constexpr char kInvalidInterval[] = "Invalid timer interval\n";

}  // namespace

const ValueEntry* ValueList::History::Sample::Find(const char* name) const {
    const auto found = std::find_if(values.begin(), values.end(), ValueFinder(name));
    return found == values.end() ? nullptr : &*found;
}

ValueList::History::History(const ValueList& owner)
    : owner_(owner),
      timer_("ValueList history snapshot", MakeCallback(this, &History::OnTimeout)) {}

void ValueList::History::Command(Writable* out, int argc, const char* const* argv) {
    const char* command = argc > 0 ? argv[0] : "";
    const auto is = [command](const char* word) { return strcasecmp(command, word) == 0; };
    const ValueKeys keys = argc > 0 ? ValueKeys(argv + 1, argv + argc) : ValueKeys();

    if (is("show")) {
        if (keys.empty()) {
            PrintSamples(out, samples_);
        } else {
            PrintSampleTable(out, samples_, keys);
        }
    } else if (is("delta") || is("rate")) {
        PrintDeltaTable(out, samples_, keys, is("rate"));
    } else if (is("snapshot")) {
        TakeSample(CurrentWallTime());
    } else if (is("periodic") && argc == 2) {
        Periodic(out, argv[1]);
    } else if (is("capture") && argc == 3) {
        Capture(out, argv[1], argv[2]);
    } else if (is("size") && argc == 2) {
        Resize(out, argv[1]);
    } else if (is("reset")) {
        samples_.clear();
    } else if (is("stop")) {
        timer_.Stop();
    } else {
        out->Puts(
            "show [keys...] | capture {num_samples} {interval_ms} | size {num_samples} | snapshot "
            "| periodic {interval_ms} | reset | stop | delta {keys...} | rate {keys...}\n");
    }
}

void ValueList::History::TakeSample(const WallTime& now) {
    samples_.push_back({now, owner_.Values()});
    DropOldest();
}

void ValueList::History::OnTimeout(unsigned int /*nowMs*/, void* /*userData*/) {
    TakeSample(CurrentWallTime());
    if (remaining_ > 0 && --remaining_ == 0) {
        timer_.Stop();
    }
}

void ValueList::History::Periodic(Writable* out, const char* interval) {
    const int32_t intervalMs = StrToInt32(interval, 10);
    if (intervalMs < kMinPeriodicMs) {
        out->Puts(kInvalidInterval);
        return;
    }
    // The count of a replaced capture must not end it.
    remaining_ = 0;
    samples_.clear();
    timer_.Start(0, static_cast<unsigned int>(intervalMs));
    out->Printf("Capturing samples periodically every %i milliseconds.\n", intervalMs);
}

void ValueList::History::Capture(Writable* out, const char* samples, const char* interval) {
    const int32_t count = StrToInt32(samples, 10);
    if (count < 1) {
        out->Puts("num_samples must be greater than zero.\n");
        return;
    }
    // Larger than the least interval of "periodic", on purpose.
    const int32_t intervalMs = StrToInt32(interval, 10);
    if (intervalMs < kMinCaptureMs) {
        out->Puts(kInvalidInterval);
        return;
    }
    remaining_ = maxSamples_ = count;
    samples_.clear();
    timer_.Start(0, static_cast<unsigned int>(intervalMs));
    out->Printf("Capturing %i samples periodically at a spacing of %i milliseconds.\n", count,
                intervalMs);
}

void ValueList::History::Resize(Writable* out, const char* samples) {
    const int32_t count = StrToInt32(samples, 10);
    if (count < 1) {
        return;
    }
    out->Printf("Set maximum history size to %i\n", count);
    maxSamples_ = count;
    DropOldest();
}

void ValueList::History::DropOldest() {
    while (samples_.size() > static_cast<size_t>(maxSamples_)) {
        samples_.pop_front();
    }
}

}  // namespace Quenda
