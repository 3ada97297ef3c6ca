#include "core/output/Writable.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "core/text/FormatText.h"

namespace Quenda {

Writable::~Writable() {
    // On a copy, since each list detaches itself in turn.
    const std::vector<TraceListIntf*> lists = std::exchange(memberships_, {});
    for (TraceListIntf* list : lists) {
        list->RemoveSink(this);
    }
}

size_t Writable::Write(int /*level*/, const void* data, size_t length) {
    return Write(data, length);
}

size_t Writable::Printf(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const size_t written = VPrintf(format, arguments);
    va_end(arguments);
    return written;
}

size_t Writable::Printf(int /*level*/, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const size_t written = VPrintf(format, arguments);
    va_end(arguments);
    return written;
}

size_t Writable::VPrintf(const char* format, va_list arguments) {
    const std::string text = FormatTextV(format, arguments);
    return Write(text.c_str(), text.size());
}

size_t Writable::VPrintf(int /*level*/, const char* format, va_list arguments) {
    return VPrintf(format, arguments);
}

size_t Writable::Puts(const char* text) {
    return Write(text, strlen(text));
}

size_t Writable::Puts(int /*level*/, const char* text) {
    return Puts(text);
}

void Writable::AttachList(TraceListIntf* list) {
    if (std::find(memberships_.begin(), memberships_.end(), list) == memberships_.end()) {
        memberships_.push_back(list);
    }
}

void Writable::DetachList(TraceListIntf* list) {
    memberships_.erase(std::remove(memberships_.begin(), memberships_.end(), list),
                       memberships_.end());
}

}  // namespace Quenda
