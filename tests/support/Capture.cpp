#include "tests/support/Capture.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>

Capture::Capture(int fd)
    : fd_(fd), saved_(fcntl(fd, F_DUPFD_CLOEXEC, 3)), file_(memfd_create("capture", MFD_CLOEXEC)) {
    fflush(nullptr);
    dup2(file_, fd_);
}

Capture::~Capture() {
    Stop();
}

std::string Capture::Stop() {
    if (file_ == -1) {
        return {};
    }
    fflush(nullptr);
    dup2(saved_, fd_);
    close(saved_);
    std::string text(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
    (void)!pread(file_, &text[0], text.size(), 0);
    close(file_);
    file_ = -1;
    return text;
}
