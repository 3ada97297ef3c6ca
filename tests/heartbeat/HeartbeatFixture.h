#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "core/options/OptionsNodeEdit.h"
#include "heartbeat/HeartbeatReadTimer.h"
#include "tests/support/Capture.h"
#include "tests/support/TempDir.h"

// A reader on a heartbeat file of the test's own.
struct HeartbeatFixture : testing::Test {
    std::string File() const { return dir_.File("heartbeat"); }
    void WriteBytes(const std::string& bytes) { dir_.Write("heartbeat", bytes); }
    void WriteCount(uint32_t count) {
        WriteBytes(std::string(reinterpret_cast<const char*>(&count), sizeof(count)));
    }

    // `timeout` is any type that a leaf can have.
    template <typename T>
    bool Reload(const T& timeout) {
        Quenda::OptionsNodeEdit options;
        options.SetLeaf("heartbeat_filename", File(), nullptr);
        options.SetLeaf("heartbeat_timeout_sec", timeout, nullptr);
        return timer_.Reload(options);
    }

    // One check, as the armed timer makes it; what was logged is kept.
    bool Check() {
        Capture log(2);
        bool result = false;
        timer_.OnTimeout(0, &result);
        log_ = log.Stop();
        return result;
    }

    TempDir dir_;
    Quenda::HeartbeatReadTimer timer_;
    std::string log_;
};
