#pragma once

namespace Monitor {

// Asks the running instance for its status report and copies it to standard error; whatever goes
// wrong is said there, too. It takes about 10 seconds at most, counted in polls.
void QueryStatus();

}  // namespace Monitor
