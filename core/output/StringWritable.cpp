#include "core/output/StringWritable.h"

#include "core/text/FormatText.h"

namespace Quenda {

size_t StringWritable::Write(const void* data, size_t /*length*/) {
    return Puts(static_cast<const char*>(data));
}

size_t StringWritable::VPrintf(const char* format, va_list arguments) {
    text_ += FormatTextV(format, arguments);
    return text_.size();
}

size_t StringWritable::Puts(const char* text) {
    text_ += text;
    return text_.size();
}

}  // namespace Quenda
