#include "core/log/TraceList.h"

#include <algorithm>
#include <climits>
#include <new>
#include <string>

#include "core/text/FormatText.h"

namespace Quenda {

TraceList::~TraceList() {
    for (const Entry& entry : entries_) {
        entry.sink->DetachList(this);
    }
}

void TraceList::AddSink(int level, Writable* sink) {
    if (sink == nullptr) {
        return;
    }
    for (Entry& entry : entries_) {
        if (entry.sink == sink) {
            entry.level = level;
            return;
        }
    }
    entries_.push_back({sink, level});
    sink->AttachList(this);
}

void TraceList::RemoveSink(Writable* sink) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [sink](const Entry& entry) { return entry.sink == sink; });
    if (found != entries_.end()) {
        sink->DetachList(this);
        entries_.erase(found);
    }
}

void TraceList::Trace(int level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteFrom(level, format, arguments);
    va_end(arguments);
}

void TraceList::TraceAll(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    WriteFrom(INT_MIN, format, arguments);
    va_end(arguments);
}

void TraceList::WriteFrom(int level, const char* format, va_list arguments) {
    const auto admits = [level](const Entry& entry) { return entry.level >= level; };
    // If no sink takes the level, nothing is formatted: the watchdog traces on every check.
    if (std::none_of(entries_.begin(), entries_.end(), admits)) {
        return;
    }
    std::string text;
    try {
        text = FormatTextV(format, arguments);
    } catch (const std::bad_alloc&) {
        return;  // a lack of memory for the trace must not stop the traced operation
    }
    for (const Entry& entry : entries_) {
        if (admits(entry)) {
            entry.sink->Puts(text.c_str());
        }
    }
}

TraceList& GlobalTraceList() {
    static TraceList list;
    return list;
}

}  // namespace Quenda
