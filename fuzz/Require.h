// What must hold after a call. The exception ends the fuzzer, which keeps the input, or fails a
// test.
#pragma once

#include <stdexcept>

#define REQUIRE(condition) ((condition) ? void() : throw std::logic_error(__FILE__ ": " #condition))
