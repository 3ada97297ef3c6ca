#pragma once

#include <cstddef>
#include <cstdio>

#include "core/output/Writable.h"

namespace Quenda {

// Writes to a stdio stream, which its owner flushes and closes. Writes return the result of
// fwrite(3).
class StdioWritable : public Writable {
public:
    explicit StdioWritable(FILE* stream) : stream_(stream) {}

    using Writable::Write;
    size_t Write(const void* data, size_t length) override {
        return fwrite(data, 1, length, stream_);
    }

private:
    FILE* stream_;
};

}  // namespace Quenda
