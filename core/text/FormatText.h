// printf-style formatting into a string of the needed size.
#pragma once

#include <cstdarg>
#include <string>

namespace Quenda {

// The formatted text; empty when formatting fails. Works on a copy of `arguments`, so the caller
// may use them again.
std::string FormatTextV(const char* format, va_list arguments)
    __attribute__((format(printf, 1, 0)));

std::string FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Quenda
