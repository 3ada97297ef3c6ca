#pragma once

#include <cstdint>
#include <memory>

#include "core/text/SharedText.h"

namespace Quenda {

class EventLoop;
class Writable;

// Owns a descriptor. The event loop that it is added to (EventLoop::AddHandler) calls it when the
// descriptor is ready. The loop may be destroyed first.
//
// Errors and hang-ups arrive through HandleRead: a read or an ioctl then tells the reason.
class FileDescriptorHandler {
public:
    // `events`: EPOLLIN, EPOLLOUT or both (epoll_ctl(2)). Errors and hang-ups are always reported.
    FileDescriptorHandler(SharedText name, int fd, uint32_t events);
    // For reading from a descriptor that `SetFd` gives later.
    explicit FileDescriptorHandler(SharedText name);
    FileDescriptorHandler(const FileDescriptorHandler&) = delete;
    FileDescriptorHandler& operator=(const FileDescriptorHandler&) = delete;
    // Leaves the loop and closes the descriptor. For descriptor 0 it does neither, on purpose: a
    // console's handler must not close the process's standard input.
    virtual ~FileDescriptorHandler();

    // Both may add, remove or destroy any handler, this one included.
    virtual void HandleRead() = 0;
    virtual void HandleWrite() = 0;
    // Called when the handler is added to a loop.
    virtual void ResetCounts();

    // Waits for these events from now on. False when that changes nothing.
    bool SetEvents(uint32_t events);
    // Sets O_NONBLOCK; false, with a line in the log, when the descriptor does not allow it.
    bool SetNonBlocking();
    void Print(Writable* out) const;

    const char* Name() const { return name_.Get(); }
    int Fd() const { return fd_; }
    uint32_t Events() const { return events_; }

protected:
    void SetFd(int fd) { fd_ = fd; }

private:
    friend class EventLoop;

    SharedText name_;
    int fd_;
    std::weak_ptr<EventLoop> loop_;
    uint32_t readCount_ = 0;
    uint32_t writeCount_ = 0;
    uint32_t events_;
};

}  // namespace Quenda
