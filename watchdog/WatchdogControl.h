#pragma once

#include <cstddef>

namespace Quenda {

// The control files of the hardware watchdog in the board's CPLD, under /proc/cpld/watchdog/:
// every operation of this library takes them from here. Tests and simulations may point a slot
// at another file.
class WatchdogControl {
public:
    enum Slot : size_t {
        kCounter0,  // counter byte 0, the least significant
        kCounter1,
        kCounter2,
        kCounter3,      // the most significant
        kControlEn,     // whether the watchdog is enabled
        kControlReset,  // reset strobe
        kEnabledText,   // no file: the text that kControlEn holds when the watchdog is enabled
        kControlAll,    // start and stop
        kSlotCount
    };
    static constexpr size_t kSlotSize = 56;  // a terminating zero included

    WatchdogControl();

    const char* Get(Slot slot) const { return slots_[slot]; }
    // Longer texts are cut to 55 characters.
    void Set(Slot slot, const char* text);

private:
    char slots_[kSlotCount][kSlotSize];
};

}  // namespace Quenda
