#include "bench/Report.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

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

void Fail(const std::string& reason) {
    (void)fprintf(stderr, "daemon_bench: %s\n", reason.c_str());
    exit(2);
}

}  // namespace Bench
