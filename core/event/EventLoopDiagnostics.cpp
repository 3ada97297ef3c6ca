#include <unistd.h>

#include <cstring>

#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"
#include "core/numbers/TargetNumbers.h"
#include "core/output/Writable.h"
#include "core/timer/TimeKeeper.h"

namespace Quenda {

namespace {

void Sleep(Writable* out, const char* milliseconds) {
    const int n = StrToInt32(milliseconds, 10);
    out->Printf("Sleeping for %i milliseconds.\n", n);
    // As unsigned microseconds, a negative number would stand for more than an hour.
    if (n > 0) {
        usleep(static_cast<useconds_t>(n) * 1000U);
    }
}

}  // namespace

void EventLoop::Dump(Writable* out) const {
    DumpHandlers(out);
    out->Puts("\n");
    timeKeeper_->Dump(out);
    out->Puts("\n");
    activities_->Dump(out);
}

void EventLoop::DumpHandlers(Writable* out) const {
    for (const auto& [fd, handler] : handlers_) {
        handler->Print(out);
    }
}

void EventLoop::DebugCommand(Writable* out, int argc, const char* const* argv) {
    if (out == nullptr) {
        return;
    }
    if (argc <= 0) {
        Dump(out);
    } else if (strcmp(argv[0], "fd") == 0) {
        DumpHandlers(out);
    } else if (strcmp(argv[0], "timer") == 0) {
        timeKeeper_->Dump(out);
    } else if (strcmp(argv[0], "act") == 0) {
        activities_->Dump(out);
    } else if (argc == 2 && strcmp(argv[0], "sleep") == 0) {
        Sleep(out, argv[1]);
    } else {
        out->Puts("Usage: [fd] | [timer] | [act] | [sleep MS]\n");
    }
}

}  // namespace Quenda
