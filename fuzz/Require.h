// Throws if a condition does not hold after a call. The exception names the calling function. It
// ends the fuzzer, which keeps the input, or fails a test.
#pragma once

#include <stdexcept>
#include <string>

#define REQUIRE(condition) \
    ((condition) ? void() : throw std::logic_error(std::string(__func__) + ": " #condition))
