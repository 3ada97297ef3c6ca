#pragma once

#include <string>

#include "core/output/Writable.h"

namespace Quenda {

// Collects text in a string. Writes return the string's new length.
class StringWritable : public Writable {
public:
    StringWritable() = default;
    // Reserves room for `capacity` characters and a terminating zero.
    explicit StringWritable(size_t capacity) { text_.reserve(capacity + 1); }

    using Writable::Puts;
    using Writable::VPrintf;
    using Writable::Write;

    // `data` is taken as text that ends at its first zero byte, whatever `length` says.
    size_t Write(const void* data, size_t length) override;
    size_t VPrintf(const char* format, va_list arguments) override
        __attribute__((format(printf, 2, 0)));
    size_t Puts(const char* text) override;

    const std::string& Text() const { return text_; }
    void Clear() { text_.clear(); }

private:
    std::string text_;
};

}  // namespace Quenda
