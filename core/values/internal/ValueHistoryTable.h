// How the samples of a ValueList::History are printed.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "core/values/ValueHistory.h"

namespace Quenda {

using ValueSamples = std::deque<ValueList::History::Sample>;
using ValueKeys = std::vector<const char*>;

// Local time with milliseconds, rounded to the nearest.
std::string SampleTimeText(const WallTime& time);

// Every value of every sample, one line each.
void PrintSamples(Writable* out, const ValueSamples& samples);

// Tables with a column for each key and a row for each sample. A key that a sample lacks shows
// as "-".
void PrintSampleTable(Writable* out, const ValueSamples& samples, const ValueKeys& keys);
// The change from each sample to the next, or the change per second. There is no rate, which
// shows as "no time", when the clock did not move forward between the two.
void PrintDeltaTable(Writable* out, const ValueSamples& samples, const ValueKeys& keys,
                     bool perSecond);

}  // namespace Quenda
