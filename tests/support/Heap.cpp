#include "tests/support/Heap.h"

#include <cstdlib>
#include <new>

void (*onAllocation)() = nullptr;

// Take the place of the library's own.
void* operator new(size_t size) {
    if (onAllocation != nullptr) {
        onAllocation();
    }
    void* const block = malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    free(block);
}

void operator delete(void* block, size_t /*size*/) noexcept {
    free(block);
}
