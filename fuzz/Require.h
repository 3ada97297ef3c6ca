// What must hold after a call: otherwise the program ends here, and the fuzzer keeps the input.
#pragma once

#include <cstdio>
#include <cstdlib>

#define REQUIRE(condition)                                                             \
    do {                                                                               \
        if (!(condition)) {                                                            \
            (void)std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                              \
        }                                                                              \
    } while (false)
