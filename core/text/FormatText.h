// printf-style formatting into a string of exactly the size needed.
#pragma once

#include <cstdarg>
#include <string>

namespace Quenda {

// The formatted text; empty when the format fails or yields nothing. `arguments` is left as it
// was found, so the caller may use it again.
std::string FormatTextV(const char* format, va_list arguments)
    __attribute__((format(printf, 1, 0)));

std::string FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Quenda
