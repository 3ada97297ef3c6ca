#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>

#include "core/output/Writable.h"
#include "core/text/FormatText.h"

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

    // `data` is a text that ends at its first zero byte; `length` is ignored, on purpose.
    size_t Write(const void* data, size_t /*length*/) override {
        return Puts(static_cast<const char*>(data));
    }
    __attribute__((format(printf, 2, 0))) size_t VPrintf(const char* format,
                                                         va_list arguments) override {
        text_ += FormatTextV(format, arguments);
        return text_.size();
    }
    size_t Puts(const char* text) override {
        text_ += text;
        return text_.size();
    }

    const std::string& Text() const { return text_; }

private:
    std::string text_;
};

}  // namespace Quenda
