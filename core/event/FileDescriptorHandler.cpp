#include "core/event/FileDescriptorHandler.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "core/event/EventLoop.h"
#include "core/log/Log.h"
#include "core/output/Writable.h"

namespace Quenda {

namespace {

constexpr uint32_t kExceptions = EPOLLERR | EPOLLHUP | EPOLLRDHUP;
constexpr uint32_t kAllowed = EPOLLIN | EPOLLOUT | kExceptions;

}  // namespace

FileDescriptorHandler::FileDescriptorHandler(SharedText name, int fd, uint32_t events)
    : name_(std::move(name)), fd_(fd), events_(events | kExceptions) {}

FileDescriptorHandler::FileDescriptorHandler(SharedText name)
    : FileDescriptorHandler(std::move(name), -1, EPOLLIN) {}

FileDescriptorHandler::~FileDescriptorHandler() {
    if (fd_ <= 0) {
        return;
    }
    if (const std::shared_ptr<EventLoop> loop = loop_.lock()) {
        loop->RemoveHandler(this);
    }
    (void)close(fd_);  // the descriptor is gone even when this fails
    fd_ = -1;
}

void FileDescriptorHandler::ResetCounts() {
    readCount_ = 0;
    writeCount_ = 0;
}

bool FileDescriptorHandler::SetEvents(uint32_t events) {
    const uint32_t wanted = (events & kAllowed) | kExceptions;
    if (wanted == events_) {
        return false;
    }
    events_ = wanted;
    if (const std::shared_ptr<EventLoop> loop = loop_.lock()) {
        (void)loop->ModifyHandler(this);  // logs its own failure
    }
    return true;
}

bool FileDescriptorHandler::SetNonBlocking() {
    const int flags = fcntl(fd_, F_GETFL);
    if (flags == -1) {
        LogError("%s fcntl() get flags failed: %s\n", Name(), strerror(errno));
        return false;
    }
    if (fcntl(fd_, F_SETFL, flags | O_NONBLOCK) == -1) {
        LogError("%s set O_NONBLOCK failed: %s\n", Name(), strerror(errno));
        return false;
    }
    return true;
}

void FileDescriptorHandler::Print(Writable* out) const {
    // An absent flag is a single blank, on purpose: the columns are not padded to equal width.
    out->Printf("%p fd:%d \"%s\" Use Count: %d/%d %s%s%s\n", static_cast<const void*>(this), fd_,
                Name(), static_cast<int>(readCount_), static_cast<int>(writeCount_),
                (events_ & EPOLLIN) != 0 ? "READ " : " ",
                (events_ & EPOLLOUT) != 0 ? "WRITE " : " ",
                (events_ & kExceptions) != 0 ? "EXCEP " : " ");
}

}  // namespace Quenda
