#include "examples/diagnostics_console/LineReader.h"

#include <sys/epoll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace {

bool CanBePolled(int fd) {
    struct stat input = {};
    return isatty(fd) == 1 ||
           (fstat(fd, &input) == 0 && (S_ISFIFO(input.st_mode) || S_ISSOCK(input.st_mode)));
}

}  // namespace

LineReader::LineReader(Callback callback)
    : FileDescriptorHandler("standard input", STDIN_FILENO, EPOLLIN),
      callback_(std::move(callback)) {}

LineReader::~LineReader() {
    if (loop_ != nullptr) {
        (void)loop_->RemoveHandler(this);
    }
}

bool LineReader::Start(Quenda::EventLoop& loop) {
    if (!CanBePolled(Fd())) {
        return loop.AddActivity(&fileHold_);
    }
    if (!loop.AddHandler(this)) {
        return false;
    }
    loop_ = &loop;
    return true;
}

void LineReader::HandleRead() {
    if (!ReadPiece()) {
        (void)std::exchange(loop_, nullptr)->RemoveHandler(this);
        callback_->Invoke(nullptr);
    }
}

bool LineReader::OnActivity(int /*unused*/) {
    if (ReadPiece()) {
        return false;  // again on the next turn
    }
    callback_->Invoke(nullptr);
    return true;
}

bool LineReader::ReadPiece() {
    char piece[512];
    const ssize_t length = read(Fd(), piece, sizeof(piece));
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) {
        return true;  // nothing yet: standard input may be shared with others, and its mode too
    }
    if (length > 0) {
        text_.append(piece, static_cast<size_t>(length));
    } else if (!text_.empty()) {
        text_ += '\n';  // the last line may lack its end
    }
    PassLines();
    return length > 0;
}

void LineReader::PassLines() {
    for (size_t end = text_.find('\n'); end != std::string::npos; end = text_.find('\n')) {
        const std::string line = text_.substr(0, end);
        text_.erase(0, end + 1);
        callback_->Invoke(line.c_str());
    }
}
