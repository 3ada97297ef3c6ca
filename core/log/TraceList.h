#pragma once

#include <cstdarg>
#include <vector>

#include "core/output/Writable.h"

namespace Quenda {

// Output sinks, each with a threshold. A traced message is formatted once and written to every sink
// whose threshold is at least the message's level, in the order in which the sinks were added.
// The sinks are not owned. A sink that is destroyed leaves the list.
class TraceList : public TraceListIntf {
public:
    TraceList() = default;
    TraceList(const TraceList&) = delete;
    TraceList& operator=(const TraceList&) = delete;
    ~TraceList() override;

    // Ignores null. A sink that is in the list already keeps its place and takes the new level.
    void AddSink(int level, Writable* sink);
    void RemoveSink(Writable* sink) override;

    void Trace(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));
    // To every sink, regardless of its threshold.
    void TraceAll(const char* format, ...) __attribute__((format(printf, 2, 3)));

private:
    struct Entry {
        Writable* sink;
        int level;
    };

    void WriteFrom(int level, const char* format, va_list arguments);

    std::vector<Entry> entries_;
};

// The process's trace list.
TraceList& GlobalTraceList();

}  // namespace Quenda
