#include "core/log/Syslog.h"

#include <syslog.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/log/Log.h"
#include "core/log/internal/SystemLogger.h"

namespace Quenda {

namespace {

bool isOpen = false;
const char* openIdent = nullptr;
LogHooks savedHooks = {nullptr, nullptr};

void Send(int priority, const char* format, va_list arguments) {
    // Lines of the usual length need no heap, which may be exhausted: that is logged, too.
    std::array<char, 1024> usual = {};
    va_list copy;
    va_copy(copy, arguments);
    const int length = vsnprintf(usual.data(), usual.size(), format, copy);
    va_end(copy);
    char* whole = nullptr;
    if (length >= static_cast<int>(usual.size())) {
        va_copy(copy, arguments);
        whole = vasprintf(&whole, format, copy) == -1 ? nullptr : whole;
        va_end(copy);
    }
    const char* const text = whole == nullptr ? usual.data() : whole;
    SendToSystemLogger(openIdent, priority, text, strlen(text));
    free(whole);
}

void PlainHook(const char* format, va_list arguments) {
    Send(LOG_DAEMON | LOG_ERR, format, arguments);
    savedHooks.plain(format, arguments);
}

void LevelledHook(int level, const char* format, va_list arguments) {
    if (level == 0) {
        Send(LOG_DAEMON | LOG_NOTICE, format, arguments);
    }
    savedHooks.levelled(level, format, arguments);
}

}  // namespace

void OpenSyslog(const char* ident) {
    static const bool closedAtExit = atexit(CloseSyslog) == 0;
    (void)closedAtExit;  // without it, the hooks stay until the process has ended
    CloseSyslog();
    openlog(ident, 0, LOG_DAEMON);  // for a logger that listens for streams
    openIdent = ident;
    savedHooks = CurrentLogHooks();
    CurrentLogHooks() = {PlainHook, LevelledHook};
    isOpen = true;
}

void CloseSyslog() {
    if (!isOpen) {
        return;
    }
    isOpen = false;
    openIdent = nullptr;
    closelog();
    CurrentLogHooks() = savedHooks;
    savedHooks = {nullptr, nullptr};
}

bool IsSyslogOpen() {
    return isOpen;
}

size_t SysloggerWritable::Write(const void* data, size_t length) {
    const char* const text = static_cast<const char*>(data);
    SendToSystemLogger(openIdent, LOG_DAEMON | LOG_ERR, text, strnlen(text, length));
    return length;
}

SysloggerWritable& SyslogSink() {
    static SysloggerWritable sink;
    return sink;
}

}  // namespace Quenda
