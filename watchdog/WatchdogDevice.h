// The hardware watchdog: starting, re-arming and stopping it through its control files.
//
// A counter of 3.125 MHz runs down from a programmed value and resets the board at zero. Only the
// bite times 30, 60 and 300 seconds can be programmed. No error is logged: each operation returns a
// code (WatchdogControl.h), and the three at the end also explain a failure in `text` (`length`
// bytes), which stays untouched on success. Traces go to the global trace list at level 9.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "watchdog/WatchdogControl.h"

namespace Quenda {

// The descriptors of the control files, by slot. They start at 0, and 0 means that the file is not
// open. So a file that the kernel opens as descriptor 0 is never closed.
struct WatchdogDescriptors : std::array<int, WatchdogControl::kSlotCount> {
    WatchdogDescriptors() : array{} {}
};

// The steps. On failure each also stores its code in `error`. A null `error` is the failure
// WD_NULL_POINTER.

uint32_t wdOpenDevice(const char* path, int flags, int* descriptor, uint32_t* error);
// Opens all seven files, or none.
uint32_t wdOpenAll(const WatchdogControl& control, WatchdogDescriptors* descriptors,
                   uint32_t* error);
// Closes what is open, without resetting the variables.
void wdCloseAll(const WatchdogDescriptors& descriptors);
uint32_t wdReadDevice(int descriptor, void* buffer, size_t length, uint32_t* error);
// Writes `length` bytes of `text`, which ends with a zero byte for the trace.
uint32_t wdWriteDevice(int descriptor, const char* text, size_t length, uint32_t* error);
uint32_t wdSetWatchdogTime(uint32_t seconds, const WatchdogDescriptors& descriptors,
                           uint32_t* error);
uint32_t wdDisable(int controlAll, uint32_t* error);
// Reads two bytes.
uint32_t wdReadEnable(int controlEn, char* buffer, uint32_t* error);

// Starts the board's watchdog, or re-arms it, with a bite time of 30, 60 or 300 seconds.
// Nothing stops it when this process ends: unless it is re-armed in time, the terminal reboots.
// WD_INV_ENTRY for any other bite time.
uint32_t wdStart(const WatchdogControl& control, uint32_t seconds, char* text, size_t length);

uint32_t wdStop(const WatchdogControl& control, char* text, size_t length);

constexpr uint32_t kWatchdogEnabled = 1;
constexpr uint32_t kWatchdogDisabled = 2;
uint32_t wdIsEnabled(const WatchdogControl& control, uint32_t* state, char* text, size_t length);

}  // namespace Quenda
