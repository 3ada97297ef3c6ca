#pragma once

namespace Monitor {

// Asks the running instance for its status report and prints it on standard error, as well as any
// failure. Takes about 10 seconds at most: they are counted in polls.
void QueryStatus();

}  // namespace Monitor
