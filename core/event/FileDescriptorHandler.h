#pragma once

#include <cstdint>
#include <memory>

#include "core/text/SharedText.h"

namespace Quenda {

class EventLoop;
class Writable;

// Something that wants to know when its descriptor is ready. It owns the descriptor, and the
// loop that it is added to (EventLoop::AddHandler) calls it back; the loop may end before it.
//
// Errors and hang-ups arrive through HandleRead: a read or an ioctl then tells what happened.
class FileDescriptorHandler {
public:
    // `events`: any of EPOLLIN and EPOLLOUT (epoll_ctl(2)); errors and hang-ups always belong.
    FileDescriptorHandler(SharedText name, int fd, uint32_t events);
    // Without a descriptor yet, for reading.
    explicit FileDescriptorHandler(SharedText name);
    FileDescriptorHandler(const FileDescriptorHandler&) = delete;
    FileDescriptorHandler& operator=(const FileDescriptorHandler&) = delete;
    // Leaves the loop and closes the descriptor. Descriptor 0 does neither, on purpose: a
    // handler on the console never takes standard input away from the process.
    virtual ~FileDescriptorHandler();

    // Both may remove, destroy or add any handler, this one included.
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
