#pragma once

#include <string>

#include "core/callback/Callback.h"
#include "core/event/ActivitySet.h"
#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"

// Reads standard input in the event loop and hands it on line by line.
//
// epoll(7) takes terminals, pipes and sockets, but no regular files, which are always ready: a file
// is read by an activity instead, a piece on each turn of the loop.
class LineReader : public Quenda::FileDescriptorHandler {
public:
    // Called with each line, without its line end, and with null when the input has ended.
    using Callback = Quenda::CallbackRef1<const char*>;

    explicit LineReader(Callback callback);
    // A handler does not take descriptor 0 out of the loop by itself.
    ~LineReader() override;

    // False when the loop does not take it. The loop must outlive this reader.
    bool Start(Quenda::EventLoop& loop);
    // Forgets what was read and not yet passed on.
    void Discard() { text_.clear(); }

    void HandleRead() override;
    void HandleWrite() override {}

private:
    // False at the end of the input.
    bool ReadPiece();
    bool OnActivity(int unused);
    void PassLines();

    Callback callback_;
    Quenda::EventLoop* loop_ = nullptr;
    std::string text_;  // read and not yet passed on
    Quenda::ActivityHold fileHold_{Quenda::MakeCallback(this, &LineReader::OnActivity),
                                   "read standard input"};
};
