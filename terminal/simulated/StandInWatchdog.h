#pragma once

#include <limits>
#include <string>

namespace Terminals::Simulated {

// Stands in for the board's hardware watchdog: it gets the writes to the control files, counts down
// and bites. All times are seconds on the caller's clock.
class StandInWatchdog {
public:
    // Handles a write to a control file, "FILE TEXT". Returns a line for the user, or "". Only the
    // value of the first counter arrives whole: this byte selects the bite time.
    std::string Write(const std::string& write, double now);

    // Returns the next line of the countdown if it is due, or "". A line comes every sixth of the
    // bite time, so a watchdog that is re-armed in time stays silent. The last line is the bite.
    std::string Tick(double now);

    // When `Tick` returns the next line; infinity while not armed.
    double NextLine() const { return nextLine_; }
    // True after the bite, until the next arming.
    bool HasBitten() const { return linesLeft_ == 0; }

private:
    unsigned chosenSeconds_ = 0;  // by the first counter, in force with the next start
    unsigned biteSeconds_ = 0;
    unsigned linesLeft_ = 6;
    double nextLine_ = std::numeric_limits<double>::infinity();
};

}  // namespace Terminals::Simulated
