// Included by force in front of jsoncpp's sources, which stay as they are. What it changes:
// - the library's `free` overwrites a block before it returns it to the heap, so that no text
//   of a value or a member name stays behind in freed memory;
// - a comment that does not begin with "/" is complained about and kept; every other failed
//   check ends the process with the library's message on standard error;
// - numbers have 32 bits, as on the terminal (JSON_NO_INT64). The library then still names its
//   64-bit type in a conversion that nothing calls.
#pragma once

#include <json/assertions.h>
#include <malloc.h>
#include <string.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "core/options/internal/JsonComplaint.h"

namespace Json {
using UInt64 = uint64_t;
using Int64 = int64_t;
}  // namespace Json

inline void QuendaWipingFree(void* block) {
    if (block != nullptr) {
        explicit_bzero(block, malloc_usable_size(block));
    }
    std::free(block);
}

inline void QuendaFailedCheck(const char* message) {
    constexpr char kComment[] = "Comments must start with /";
    if (strstr(message, kComment) != nullptr) {
        Quenda::ComplainAboutJson(kComment);
        return;
    }
    (void)std::fprintf(stderr, "%s\n", message);
    std::abort();
}

#define free QuendaWipingFree
#undef JSON_ASSERT_MESSAGE
#define JSON_ASSERT_MESSAGE(condition, message) \
    do {                                        \
        if (!(condition)) {                     \
            QuendaFailedCheck(message);         \
        }                                       \
    } while (0)
