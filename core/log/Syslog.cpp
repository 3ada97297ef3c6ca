#include "core/log/Syslog.h"

#include <syslog.h>

#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "core/log/Log.h"
#include "core/log/TraceList.h"
#include "core/log/internal/SystemLogger.h"
#include "core/options/OptionsNode.h"

namespace Quenda {

namespace {

constexpr int32_t kDefaultLevel = 5;

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
    std::unique_ptr<char, void (*)(void*)> whole(nullptr, free);
    if (length >= static_cast<int>(usual.size())) {
        char* text = nullptr;
        va_copy(copy, arguments);
        whole.reset(vasprintf(&text, format, copy) == -1 ? nullptr : text);
        va_end(copy);
    }
    const char* const text = whole == nullptr ? usual.data() : whole.get();
    SendToSystemLogger(openIdent, priority, text, strlen(text));
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
    // If it fails, the hooks stay until the process has ended.
    [[maybe_unused]] static const int closesAtExit = atexit(CloseSyslog);
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

void ApplySysloggerOptions(TraceList& list, const OptionsNode* options) {
    // Read as a number, which a boolean is, too: 1 for true and 0 for false.
    int32_t isOn = 0;
    if (options == nullptr || options->IsEmpty() ||
        !options->GetMemberValue(isOn, "syslogger_on", 0)) {
        return;
    }
    if (isOn == 0) {
        list.RemoveSink(&SyslogSink());
        return;
    }
    int32_t level = kDefaultLevel;
    (void)options->GetMemberValue(level, "syslogger_level", kDefaultLevel);  // 5 when it fails
    list.AddSink(level, &SyslogSink());
}

}  // namespace Quenda
