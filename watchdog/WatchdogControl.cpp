#include "watchdog/WatchdogControl.h"

#include <cstdio>

namespace Quenda {

WatchdogControl::WatchdogControl() {
    // The driver misspells its file names; these match it on purpose.
    Set(kCounter0, "/proc/cpld/watchdog/intial-cnt0");
    Set(kCounter1, "/proc/cpld/watchdog/intial-cnt1");
    Set(kCounter2, "/proc/cpld/watchdog/intial-cnt2");
    Set(kCounter3, "/proc/cpld/watchdog/intial-cnt3");
    Set(kControlEn, "/proc/cpld/watchdog/control-en");
    Set(kControlReset, "/proc/cpld/watchdog/control-reset");
    Set(kEnabledText, "1");
    Set(kControlAll, "/proc/cpld/watchdog/control-all");
}

void WatchdogControl::Set(Slot slot, const char* text) {
    (void)snprintf(slots_[slot], kSlotSize, "%s", text);  // a longer text is cut, as said
}

}  // namespace Quenda
