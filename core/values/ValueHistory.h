#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "core/timer/PeriodicTimer.h"
#include "core/timer/WallClock.h"
#include "core/values/ValueEntry.h"
#include "core/values/ValueList.h"

namespace Quenda {

// Samples a list's values, once or periodically, and keeps the latest samples. The list must
// outlive it.
class ValueList::History {
public:
    struct Sample {
        WallTime time;
        std::vector<ValueEntry> values;

        // Null when the sample has no value of that name.
        const ValueEntry* Find(const char* name) const;
    };

    explicit History(const ValueList& owner);
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    // Runs a console command, whose word may be in upper or lower case. An unknown one prints the
    // usage.
    void Command(Writable* out, int argc, const char* const* argv);

    // Adds a sample with this time and drops the oldest ones beyond the maximum.
    void TakeSample(const WallTime& now);
    // The timer's callback: takes a sample. After the last one of a capture it stops the timer.
    void OnTimeout(unsigned int nowMs, void* userData);

private:
    void Periodic(Writable* out, const char* interval);
    void Capture(Writable* out, const char* samples, const char* interval);
    void Resize(Writable* out, const char* samples);
    void DropOldest();

    const ValueList& owner_;
    std::deque<Sample> samples_;  // oldest first
    PeriodicTimer timer_;
    int32_t maxSamples_ = 10;
    int32_t remaining_ = 0;  // samples that a capture has yet to take
};

}  // namespace Quenda
