#pragma once

#include <string>

namespace Simulator {

// Stands in for the board's hardware watchdog: told what is written to its control files, it
// counts down and bites. All times are seconds on a clock of the caller's.
class StandInWatchdog {
public:
    // `text` was written to the control file. Returns what a reader should know of it, or "".
    // Only the first counter's value arrives whole: its byte alone tells the bite time.
    std::string Write(const std::string& file, const std::string& text, double now);

    // Returns the countdown's next line when one is due, or "". A sixth of the bite time passes
    // between two lines, so that a watchdog that is re-armed in time stays silent.
    std::string Tick(double now);

    bool HasBitten(double now) const { return armed_ && now >= biteAt_; }

    // When `Tick` or `HasBitten` next has something to say; infinity while not armed.
    double NextEvent() const;

    bool IsArmed() const { return armed_; }
    unsigned BiteSeconds() const { return biteSeconds_; }

    // As after a reboot: not armed, nothing written.
    void Reset() { *this = StandInWatchdog(); }

private:
    void Arm(double now);

    unsigned chosenSeconds_ = 0;  // by the first counter, in force with the next start
    unsigned biteSeconds_ = 0;
    bool armed_ = false;
    double biteAt_ = 0;
    double nextLine_ = 0;
};

}  // namespace Simulator
