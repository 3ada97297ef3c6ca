#pragma once

#include <limits>
#include <string>

namespace Terminals::Simulated {

// Stands in for the board's hardware watchdog: told what is written to its control files, it
// counts down and bites. All times are seconds on a clock of the caller's.
class StandInWatchdog {
public:
    // `text` was written to the control file. Returns what a reader should know of it, or "".
    // Only the first counter's value arrives whole: its byte alone tells the bite time.
    std::string Write(const std::string& file, const std::string& text, double now);

    // Returns the countdown's next line when one is due, or "". A sixth of the bite time passes
    // between two lines, so that a watchdog that is re-armed in time stays silent. The last line
    // is the bite itself.
    std::string Tick(double now);

    // When `Tick` next has something to say; infinity while not armed.
    double NextLine() const { return nextLine_; }
    // True from the bite on until the next arming.
    bool HasBitten() const { return linesLeft_ == 0; }
    // What it is armed with, 0 before the first arming.
    unsigned BiteSeconds() const { return biteSeconds_; }

private:
    unsigned chosenSeconds_ = 0;  // by the first counter, in force with the next start
    unsigned biteSeconds_ = 0;
    unsigned linesLeft_ = 6;
    double nextLine_ = std::numeric_limits<double>::infinity();
};

}  // namespace Terminals::Simulated
