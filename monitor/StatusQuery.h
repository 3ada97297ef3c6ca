#pragma once

namespace Monitor {

// Asks the running instance for its status report and copies it to standard error; whatever goes
// wrong is said there, too. Takes 10 seconds at most.
void QueryStatus();

}  // namespace Monitor
