// A handler on the reading end of a pipe.
#include <sys/epoll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"

namespace {

class PipeReader : public Quenda::FileDescriptorHandler {
public:
    explicit PipeReader(int fd) : FileDescriptorHandler("pipe reader", fd, EPOLLIN) {}

    // Also called for errors and for the end of the pipe: the result of read(2) tells which.
    void HandleRead() override {
        char text[64];
        const ssize_t length = read(Fd(), text, sizeof(text));
        if (length > 0) {
            std::printf("read \"%.*s\"\n", static_cast<int>(length), text);
        } else {
            std::puts(length == 0 ? "end of the pipe" : "cannot read the pipe");
            Quenda::EventLoop::Instance().Stop();
        }
    }
    void HandleWrite() override {}
};

}  // namespace

int main() {
    Quenda::EventLoop& loop = Quenda::EventLoop::Instance();
    int ends[2];
    if (!loop.Init() || pipe(ends) != 0) {
        return EXIT_FAILURE;
    }
    PipeReader reader(ends[0]);  // owns the descriptor from here on
    if (!loop.AddHandler(&reader) || write(ends[1], "ping", 4) != 4 || close(ends[1]) != 0) {
        return EXIT_FAILURE;
    }
    return loop.Run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
