#include "bench/Row.h"

#include <cstdarg>
#include <cstdio>

namespace Bench {

bool PrintRow(bool kept, const char* columns, ...) {
    va_list arguments;
    va_start(arguments, columns);
    (void)printf("| ");
    (void)vprintf(columns, arguments);
    (void)printf(" | %s |\n", kept ? "yes" : "**no**");
    (void)fflush(stdout);
    va_end(arguments);
    return kept;
}

}  // namespace Bench
