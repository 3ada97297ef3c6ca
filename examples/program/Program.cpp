// A complete program: a timer runs a command, whose output comes back through a pipe.
#include <sys/epoll.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"
#include "core/log/Log.h"
#include "core/options/OptionsNodeEdit.h"
#include "core/timer/PeriodicTimer.h"
#include "core/timer/WallClock.h"
#include "shell/ShellRunner.h"

using Quenda::EventLoop;
using Quenda::LogMessage;

namespace {

class PipeReader : public Quenda::FileDescriptorHandler {
public:
    explicit PipeReader(int fd) : FileDescriptorHandler("pipe reader", fd, EPOLLIN) {}

    void HandleRead() override {
        char text[64];
        const ssize_t length = read(Fd(), text, sizeof(text));
        LogMessage(0, "read %.*s", static_cast<int>(length), text);
        EventLoop::Instance().Stop();
    }
    void HandleWrite() override {}
};

class Command {
public:
    Command(int output, uint32_t periodMs) : output_(output) { timer_.Start(0, periodMs); }

private:
    void OnTimeout(unsigned int /*nowMs*/, void* /*userData*/) {
        std::string text;
        if (!Quenda::RunShellCommand("echo what the command printed", text) ||
            write(output_, text.data(), text.size()) < 0) {
            LogMessage(0, "the command failed: %s", text.c_str());
        }
        timer_.Stop();
    }

    int output_;
    Quenda::PeriodicTimer timer_{"command", Quenda::MakeCallback(this, &Command::OnTimeout)};
};

}  // namespace

int main() {
    Quenda::OptionsNodeEdit options;
    (void)options.SetLeaf("period_ms", 20U, "milliseconds");
    uint32_t periodMs = 0;
    if (!options.GetMemberValue(periodMs, "period_ms", 1000)) {
        LogMessage(0, "%s, so %u\n", options.Error().Get(), periodMs);
    }
    int ends[2];
    if (!EventLoop::Instance().Init() || pipe(ends) != 0) {
        return EXIT_FAILURE;
    }
    PipeReader reader(ends[0]);
    if (!EventLoop::Instance().AddHandler(&reader)) {
        return EXIT_FAILURE;
    }
    const Command command(ends[1], periodMs);
    // Times have 64 bits on the terminal, too.
    LogMessage(0, "every %u ms until %s\n", periodMs, Quenda::FormatTime(4102444800, "%Y").Get());
    return EventLoop::Instance().Run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
