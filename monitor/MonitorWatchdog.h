#pragma once

#include <cstdint>

namespace Monitor {

constexpr uint32_t kBiteSeconds = 300;       // the longest that the board offers
constexpr uint32_t kRebootBiteSeconds = 30;  // the shortest

// Arms or re-arms the board's watchdog; a failure is logged. Returns the code of wdStart.
uint32_t ArmWatchdog(uint32_t biteSeconds);

}  // namespace Monitor
