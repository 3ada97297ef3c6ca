#pragma once

#include <sys/epoll.h>
#include <sys/eventfd.h>

#include <functional>

#include "core/event/FileDescriptorHandler.h"

// Calls functions that a test chooses; by default on an event descriptor of its own, which is
// ready for reading and writing.
struct EventHandler : Quenda::FileDescriptorHandler {
    explicit EventHandler(const char* name, uint32_t events = EPOLLIN, int fd = eventfd(1, 0))
        : FileDescriptorHandler(name, fd, events) {}

    void HandleRead() override {
        const auto action = onRead;  // the action may destroy this handler
        action();
    }
    void HandleWrite() override {
        const auto action = onWrite;
        action();
    }

    std::function<void()> onRead = [] {};
    std::function<void()> onWrite = [] {};
};
