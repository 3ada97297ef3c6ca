#include <iterator>

#include "watchdog/WatchdogDevice.h"

namespace Quenda {

namespace {

// Which operation failed, and at which of its steps. The numbers are part of the error texts that
// service documents explain; they do not follow the lines of any file.
struct Step {
    const char* operation;
    int number;
};
constexpr Step kStartOpen = {"wdStart", 238};
constexpr Step kStartSet = {"wdStart", 245};
constexpr Step kStopOpen = {"wdStop", 268};
constexpr Step kStopDisable = {"wdStop", 275};
constexpr Step kIsEnabledArgument = {"wdIsEnabled", 299};
constexpr Step kIsEnabledOpen = {"wdIsEnabled", 306};
constexpr Step kIsEnabledRead = {"wdIsEnabled", 313};

// Closes everything, and explains the code when it is a failure. Returns the code.
uint32_t Finish(const WatchdogDescriptors& descriptors, const Step& step, uint32_t code, char* text,
                size_t length) {
    wdCloseAll(descriptors);
    if (code != WD_DB_OK) {
        (void)wdFormatError(step.operation, step.number, code, text, length);
    }
    return code;
}

}  // namespace

uint32_t wdStart(const WatchdogControl& control, uint32_t seconds, char* text, size_t length) {
    WatchdogDescriptors descriptors;
    uint32_t error = WD_DB_OK;
    if (wdOpenAll(control, &descriptors, &error) != WD_DB_OK) {
        return Finish(descriptors, kStartOpen, error, text, length);
    }
    const uint32_t code = wdSetWatchdogTime(seconds, descriptors, &error);
    return Finish(descriptors, kStartSet, code, text, length);
}

uint32_t wdStop(const WatchdogControl& control, char* text, size_t length) {
    WatchdogDescriptors descriptors;
    uint32_t error = WD_DB_OK;
    if (wdOpenAll(control, &descriptors, &error) != WD_DB_OK) {
        return Finish(descriptors, kStopOpen, error, text, length);
    }
    const uint32_t code = wdDisable(descriptors.controlAll, &error);
    return Finish(descriptors, kStopDisable, code, text, length);
}

uint32_t wdIsEnabled(const WatchdogControl& control, uint32_t* state, char* text, size_t length) {
    WatchdogDescriptors descriptors;
    uint32_t error = WD_DB_OK;
    if (state == nullptr) {
        return Finish(descriptors, kIsEnabledArgument, WD_NULL_POINTER, text, length);
    }
    if (wdOpenAll(control, &descriptors, &error) != WD_DB_OK) {
        return Finish(descriptors, kIsEnabledOpen, error, text, length);
    }
    char enabled[2] = "";
    const uint32_t code = wdReadEnable(descriptors.controlEn, enabled, &error);
    if (code == WD_DB_OK) {
        *state = enabled[0] == control.Get(WatchdogControl::kEnabledText)[0] ? kWatchdogEnabled
                                                                             : kWatchdogDisabled;
    }
    return Finish(descriptors, kIsEnabledRead, code, text, length);
}

}  // namespace Quenda
