#pragma once

// In a program that links test_heap, operator new calls this before each allocation, if it is set.
// It may throw std::bad_alloc, as if memory had run out.
extern void (*onAllocation)();
