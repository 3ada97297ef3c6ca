#pragma once

namespace Bench {

// Watches the daemon at work for so many seconds, next to programs that do the least possible.
// Prints the rows; false when a promise is broken.
bool MeasureRunningDaemon(int seconds);

}  // namespace Bench
