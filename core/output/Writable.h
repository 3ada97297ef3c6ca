// An output sink: the one way in which status dumps, console commands and traced log lines are
// written, whether they end on a stream, in a string or in syslog.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <vector>

namespace Quenda {

class Writable;

// A list of sinks, as a sink sees it (core/log has the real one). A sink that is destroyed takes
// itself out of every list it is in.
class TraceListIntf {
public:
    virtual ~TraceListIntf() = default;
    // Ignores a sink that is not in the list.
    virtual void RemoveSink(Writable* sink) = 0;
};

// The forms with a level let a caller pass one uniformly; no sink filters by it. The results are
// those of the primitive `Write`: what was taken, in the sink's own measure.
class Writable {
public:
    Writable() = default;
    Writable(const Writable&) = delete;
    Writable& operator=(const Writable&) = delete;
    // Takes the sink out of every list it is in.
    virtual ~Writable();

    virtual size_t Write(const void* data, size_t length) = 0;
    virtual size_t Write(int level, const void* data, size_t length);

    virtual size_t Printf(const char* format, ...) __attribute__((format(printf, 2, 3)));
    virtual size_t Printf(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));
    // Leaves `arguments` as it was found. A failed or empty format writes "" with length 0.
    virtual size_t VPrintf(const char* format, va_list arguments)
        __attribute__((format(printf, 2, 0)));
    virtual size_t VPrintf(int level, const char* format, va_list arguments)
        __attribute__((format(printf, 3, 0)));

    // Writes the text alone: no newline is added.
    virtual size_t Puts(const char* text);
    virtual size_t Puts(int level, const char* text);

    // For the lists: remembers, once, or forgets a list that this sink is in.
    virtual void AttachList(TraceListIntf* list);
    virtual void DetachList(TraceListIntf* list);

private:
    std::vector<TraceListIntf*> memberships_;
};

}  // namespace Quenda
