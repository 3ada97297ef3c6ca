#pragma once

#include "core/timer/PeriodicTimer.h"
#include "core/values/ValueList.h"

// What this process itself is like: its resident memory, how often it checks that per second, and
// how many timers wait. Kept in a table of named values, whose console samples and prints it.
class Figures {
public:
    Figures();

    // "show", "set", "history ..."
    void Command(Quenda::Writable* out, int argc, const char* const* argv);

private:
    void OnTimeout(unsigned int nowMs, void* userData);
    void Update(size_t timers);

    Quenda::ValueList values_;
    uint32_t checks_ = 0;  // since the rate was last worked out
    unsigned int rateSinceMs_;
    Quenda::PeriodicTimer timer_{"figures", Quenda::MakeCallback(this, &Figures::OnTimeout)};
};
