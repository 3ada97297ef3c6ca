#include "core/log/Syslog.h"

#include <syslog.h>

#include <cstdlib>

#include "core/log/Log.h"
#include "core/output/SystemLogger.h"

namespace Quenda {

namespace {

bool isOpen = false;
LogHooks savedHooks = {nullptr, nullptr};

void PlainHook(const char* format, va_list arguments) {
    SendToSyslog(LOG_DAEMON | LOG_ERR, format, arguments);
    savedHooks.plain(format, arguments);
}

void LevelledHook(int level, const char* format, va_list arguments) {
    if (level == 0) {
        SendToSyslog(LOG_DAEMON | LOG_NOTICE, format, arguments);
    }
    savedHooks.levelled(level, format, arguments);
}

}  // namespace

void OpenSyslog(const char* ident) {
    static const bool closedAtExit = atexit(CloseSyslog) == 0;
    (void)closedAtExit;  // without it, the kernel closes the socket
    CloseSyslog();
    OpenSystemLogger(ident);
    savedHooks = CurrentLogHooks();
    CurrentLogHooks() = {PlainHook, LevelledHook};
    isOpen = true;
}

void CloseSyslog() {
    if (!isOpen) {
        return;
    }
    isOpen = false;
    CloseSystemLogger();
    CurrentLogHooks() = savedHooks;
    savedHooks = {nullptr, nullptr};
}

bool IsSyslogOpen() {
    return isOpen;
}

SysloggerWritable& SyslogSink() {
    static SysloggerWritable sink;
    return sink;
}

}  // namespace Quenda
