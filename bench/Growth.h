#pragma once

namespace Bench {

// Compares what the daemon holds at the beginning and after so many checks: with a healthy Keldra,
// and with one that has to be ended and started at every check. Prints the rows; false when a
// promise is broken.
bool MeasureGrowth(int healthyChecks, int failingChecks);

}  // namespace Bench
