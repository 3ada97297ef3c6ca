#include "watchdog/WatchdogDevice.h"

namespace Quenda {

namespace {

// Closes everything, and explains the code when it is a failure. Returns the code. The numbers of
// the steps are part of the error texts that service documents explain; they do not follow the
// lines of any file.
//
// After a failed wdOpenAll, which closes what it opened, this is a second close of the same
// numbers. It is deliberate and fails harmlessly: nothing else is opened in between.
uint32_t Finish(const WatchdogDescriptors& descriptors, const char* operation, int step,
                uint32_t code, char* text, size_t length) {
    wdCloseAll(descriptors);
    if (code != WD_DB_OK) {
        (void)wdFormatError(operation, step, code, text, length);
    }
    return code;
}

}  // namespace

uint32_t wdStart(const WatchdogControl& control, uint32_t seconds, char* text, size_t length) {
    WatchdogDescriptors descriptors;
    uint32_t error = WD_DB_OK;
    if (wdOpenAll(control, &descriptors, &error) != WD_DB_OK) {
        return Finish(descriptors, "wdStart", 238, error, text, length);
    }
    const uint32_t code = wdSetWatchdogTime(seconds, descriptors, &error);
    return Finish(descriptors, "wdStart", 245, code, text, length);
}

uint32_t wdStop(const WatchdogControl& control, char* text, size_t length) {
    WatchdogDescriptors descriptors;
    uint32_t error = WD_DB_OK;
    if (wdOpenAll(control, &descriptors, &error) != WD_DB_OK) {
        return Finish(descriptors, "wdStop", 268, error, text, length);
    }
    const uint32_t code = wdDisable(descriptors[WatchdogControl::kControlAll], &error);
    return Finish(descriptors, "wdStop", 275, code, text, length);
}

uint32_t wdIsEnabled(const WatchdogControl& control, uint32_t* state, char* text, size_t length) {
    WatchdogDescriptors descriptors;
    uint32_t error = WD_DB_OK;
    if (state == nullptr) {
        return Finish(descriptors, "wdIsEnabled", 299, WD_NULL_POINTER, text, length);
    }
    if (wdOpenAll(control, &descriptors, &error) != WD_DB_OK) {
        return Finish(descriptors, "wdIsEnabled", 306, error, text, length);
    }
    char enabled[2] = "";
    const uint32_t code = wdReadEnable(descriptors[WatchdogControl::kControlEn], enabled, &error);
    if (code == WD_DB_OK) {
        *state = enabled[0] == control.Get(WatchdogControl::kEnabledText)[0] ? kWatchdogEnabled
                                                                             : kWatchdogDisabled;
    }
    return Finish(descriptors, "wdIsEnabled", 313, code, text, length);
}

}  // namespace Quenda
