#pragma once

// The C++ heap of a program that links test_heap: called before each allocation, when it is set.
// It may throw std::bad_alloc, and so stand for memory that cannot be had.
extern void (*onAllocation)();
