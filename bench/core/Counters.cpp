#include <sys/eventfd.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>

#include "bench/core/CoreMeasurements.h"
#include "bench/core/DispatchPeers.h"

namespace Bench {

namespace {

void Write(int fd) {
    const uint64_t one = 1;
    if (write(fd, &one, sizeof(one)) != sizeof(one)) {
        Fail("cannot write to a counter");
    }
}

// Also in the loops that do not wait for it to be ready: a counter at 0 does not block.
void Read(int fd) {
    uint64_t count = 0;
    (void)!read(fd, &count, sizeof(count));
}

}  // namespace

Counters::Counters(size_t count) {
    for (size_t i = 0; i < count; ++i) {
        fds_.push_back(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC));
        if (fds_.back() == -1) {
            Fail("cannot open as many counters");
        }
    }
}

Counters::~Counters() {
    for (const int fd : fds_) {
        (void)close(fd);
    }
}

void Counters::StartRing(size_t calls) {
    Stop();
    callsLeft_ = calls;
    passOn_ = true;
    Write(fds_[0]);
}

void Counters::StartBurst(size_t calls) {
    Stop();
    callsLeft_ = calls;
    passOn_ = false;
    for (const int fd : fds_) {
        Write(fd);
    }
}

void Counters::Stop() {
    for (const int fd : fds_) {
        Read(fd);
    }
}

bool Counters::Handle(size_t i) {
    if (passOn_) {
        Read(fds_[i]);
        Write(fds_[i + 1 == fds_.size() ? 0 : i + 1]);
    }
    return --callsLeft_ > 0;
}

}  // namespace Bench
