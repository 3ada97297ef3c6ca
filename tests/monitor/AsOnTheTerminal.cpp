#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "core/log/Log.h"

namespace {

const pid_t testProcess = getpid();

// A reboot ends the process with status 0. In a test that expects none it is a failure.
void OnExit() {
    if (getpid() == testProcess &&
        testing::UnitTest::GetInstance()->current_test_info() != nullptr) {
        _exit(1);
    }
}

// Only lines of level 0 reach the terminal's system log, so these tests see no others.
void Log(int level, const char* format, va_list arguments) {
    if (level == 0) {
        vfprintf(stderr, format, arguments);
    }
}

struct AsOnTheTerminal : testing::Environment {
    void SetUp() override {
        Quenda::CurrentLogHooks().levelled = Log;
        ASSERT_EQ(atexit(OnExit), 0);
    }
};
[[maybe_unused]] const auto* const environment =
    testing::AddGlobalTestEnvironment(new AsOnTheTerminal);

}  // namespace
