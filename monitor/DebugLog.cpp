#include "monitor/DebugLog.h"

#include <cstdarg>

#include "core/log/Log.h"
#include "monitor/MonitorState.h"

namespace Monitor {

void LogDebug(const char* format, ...) {
    if (!settings.debug) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    Quenda::CurrentLogHooks().levelled(0, format, arguments);
    va_end(arguments);
}

}  // namespace Monitor
