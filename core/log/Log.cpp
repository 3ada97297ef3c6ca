#include "core/log/Log.h"

#include <cstdio>

namespace Quenda {

namespace {

void WriteToStandardError(const char* format, va_list arguments) {
    (void)vfprintf(stderr, format, arguments);
    (void)fflush(stderr);
}

void WriteToStandardErrorAtAnyLevel(int /*level*/, const char* format, va_list arguments) {
    WriteToStandardError(format, arguments);
}

LogHooks hooks = {WriteToStandardError, WriteToStandardErrorAtAnyLevel};

}  // namespace

LogHooks& CurrentLogHooks() {
    return hooks;
}

void LogError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    hooks.plain(format, arguments);
    va_end(arguments);
}

void LogMessage(int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    hooks.levelled(level, format, arguments);
    va_end(arguments);
}

}  // namespace Quenda
