// The measurements. Each sets up terminals of its own and prints its rows; false when a promise is
// broken.
#pragma once

namespace Bench {

// The daemon at work for so many seconds, beside programs that do the least possible.
bool MeasureRunningDaemon(int seconds);

// What the daemon holds after so many checks: with a healthy Keldra, and with one that has to be
// ended and started at every check.
bool MeasureGrowth(int healthyChecks, int failingChecks);

}  // namespace Bench
