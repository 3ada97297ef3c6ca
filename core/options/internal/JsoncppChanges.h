// The build includes this file in front of jsoncpp's sources. It changes the library:
// - `free` overwrites a block before it returns it to the heap, so that freed memory keeps no text
//   of a value or of a member's name;
// - a lack of memory throws std::bad_alloc instead of ending the process;
// - a comment that does not begin with "/" is complained about and kept. Every other failed check
//   and every impossible conversion ends the process, with the library's message or the failed
//   condition on standard error;
// - numbers have 32 bits, as on the terminal (JSON_NO_INT64). The library still names its 64-bit
//   types in a conversion that is never called.
#pragma once

#include <json/assertions.h>
#include <malloc.h>
#include <string.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "core/options/internal/JsonTree.h"

namespace Json {
using UInt64 = uint64_t;
using Int64 = int64_t;
}  // namespace Json

// Never inline: a compiler that sees the malloc as well knows only the size that was asked for, and
// the C library's checks (_FORTIFY_SOURCE) take the wiping of the whole block for an overflow.
__attribute__((noinline)) inline void QuendaWipingFree(void* block) {
    if (block != nullptr) {
        explicit_bzero(block, malloc_usable_size(block));
    }
    std::free(block);
}

// The library would end the process. The exception only ends the call.
inline void* QuendaMalloc(size_t size) {
    void* const block = std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

[[noreturn]] inline void QuendaEndProcess(const char* message) {
    (void)std::fprintf(stderr, "%s\n", message);
    std::abort();
}

inline void QuendaFailedCheck(const char* message) {
    constexpr char kComment[] = "Comments must start with /";
    if (strstr(message, kComment) == nullptr) {
        QuendaEndProcess(message);
    }
    Quenda::ComplainAboutJson(kComment);
}

#define free QuendaWipingFree
#define malloc QuendaMalloc
#undef JSON_FAIL_MESSAGE
#define JSON_FAIL_MESSAGE(message) QuendaEndProcess(message)
#undef JSON_ASSERT_MESSAGE
#define JSON_ASSERT_MESSAGE(condition, message) \
    do {                                        \
        if (!(condition)) {                     \
            QuendaFailedCheck(message);         \
        }                                       \
    } while (0)
