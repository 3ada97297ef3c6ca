// The measurements. Each sets up a terminal of its own and prints its rows of the results; false
// when a bar is missed.
#pragma once

namespace Bench {

// The daemon at work, beside programs that do the least possible.
bool MeasureRunningDaemon(int seconds);

// The memory of very many checks without waiting.
bool MeasureGrowth(int checks);

// Lookups by name among many processes.
bool MeasureLookups();

}  // namespace Bench
