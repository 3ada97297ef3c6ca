// Prints the samples of a ValueList::History.
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

// Prints a table with a column for each key and a row for each sample. "-" means that a sample does
// not have the key.
void PrintSampleTable(Writable* out, const ValueSamples& samples, const ValueKeys& keys);
// The same for the change from each sample to the next, or for the change per second. "no time"
// means that the clock did not advance between the two, so there is no rate.
void PrintDeltaTable(Writable* out, const ValueSamples& samples, const ValueKeys& keys,
                     bool perSecond);

}  // namespace Quenda
