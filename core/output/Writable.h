// An output sink. Status dumps, console commands and traced log lines are written to a sink, which
// puts them on a stream, into a string or into syslog.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <vector>

namespace Quenda {

class Writable;

// A list of sinks, as a sink sees it; TraceList (core/log) implements it. A sink that is destroyed
// leaves every list that it is in.
class TraceListIntf {
public:
    virtual ~TraceListIntf() = default;
    // Ignores a sink that is not in the list.
    virtual void RemoveSink(Writable* sink) = 0;
};

// Some callers pass a level with every text; sinks ignore it. The result of a write depends on the
// kind of sink; its header explains it.
class Writable {
public:
    Writable() = default;
    Writable(const Writable&) = delete;
    Writable& operator=(const Writable&) = delete;
    // Leaves every list that the sink is in.
    virtual ~Writable();

    virtual size_t Write(const void* data, size_t length) = 0;
    virtual size_t Write(int level, const void* data, size_t length);

    virtual size_t Printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
    virtual size_t Printf(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));
    // Works on a copy of `arguments`. When formatting fails, "" is written, with length 0.
    virtual size_t VPrintf(const char* format, va_list arguments)
        __attribute__((format(printf, 2, 0)));
    virtual size_t VPrintf(int level, const char* format, va_list arguments)
        __attribute__((format(printf, 3, 0)));

    // Adds no newline.
    virtual size_t Puts(const char* text);
    virtual size_t Puts(int level, const char* text);

    // For lists: remembers a list, once only, or forgets it.
    virtual void AttachList(TraceListIntf* list);
    virtual void DetachList(TraceListIntf* list);

private:
    std::vector<TraceListIntf*> memberships_;
};

}  // namespace Quenda
