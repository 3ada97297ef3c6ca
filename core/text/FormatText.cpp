#include "core/text/FormatText.h"

#include <cstdio>

namespace Quenda {

std::string FormatTextV(const char* format, va_list arguments) {
    va_list measured;
    va_copy(measured, arguments);
    const int length = vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length <= 0) {
        return {};
    }
    std::string text(static_cast<size_t>(length), '\0');
    va_list formatted;
    va_copy(formatted, arguments);
    // A string has room for the terminating zero, too.
    (void)vsnprintf(&text[0], text.size() + 1, format, formatted);
    va_end(formatted);
    return text;
}

std::string FormatText(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::string text = FormatTextV(format, arguments);
    va_end(arguments);
    return text;
}

}  // namespace Quenda
