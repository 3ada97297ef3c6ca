// Included by force in front of jsoncpp's sources: from here on the library's `free`
// overwrites a block before it returns it to the heap, so that no text of a value or a
// member name stays behind in freed memory.
#pragma once

#include <malloc.h>
#include <string.h>

#include <cstdlib>

inline void QuendaWipingFree(void* block) {
    if (block != nullptr) {
        explicit_bzero(block, malloc_usable_size(block));
    }
    std::free(block);
}

#define free QuendaWipingFree
