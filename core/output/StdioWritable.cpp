#include "core/output/StdioWritable.h"

namespace Quenda {

size_t StdioWritable::Write(const void* data, size_t length) {
    return fwrite(data, 1, length, stream_);
}

}  // namespace Quenda
