#pragma once

#include <gtest/gtest.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>

#include <functional>

#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"
#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"

// Calls functions that a test chooses; by default on an event descriptor of its own, which is
// ready for reading and writing.
struct EventHandler : Quenda::FileDescriptorHandler {
    explicit EventHandler(const char* name, uint32_t events = EPOLLIN, int fd = eventfd(1, 0))
        : FileDescriptorHandler(name, fd, events) {}
    void HandleRead() override { Run(onRead); }
    void HandleWrite() override { Run(onWrite); }
    // By value: the action may destroy this handler.
    static void Run(std::function<void()> action) { action(); }

    std::function<void()> onRead = [] {};
    std::function<void()> onWrite = [] {};
};

// A loop that is ready to run; knows its epoll descriptor.
struct LoopFixture : testing::Test {
    void SetUp() override {
        EXPECT_TRUE(loop_.Init());
        for (const auto& [fd, target] : OpenDescriptors()) {
            epollFd_ = before_.count(fd) == 0 ? fd : epollFd_;
        }
    }

    std::map<int, std::string> before_ = OpenDescriptors();
    Quenda::EventLoop loop_;
    int epollFd_ = -1;
};
