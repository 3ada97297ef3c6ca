#include "heartbeat/HeartbeatReadTimer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>

#include "core/options/OptionsNodeEdit.h"
#include "tests/support/Capture.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TempDir.h"

namespace {

// A reader on a heartbeat file of the test's own.
struct HeartbeatReadTimerTest : testing::Test {
    HeartbeatReadTimerTest() { EXPECT_TRUE(Reload(10)); }
    std::string File() const { return dir_.File("heartbeat"); }
    void WriteBytes(const std::string& bytes) { dir_.Write("heartbeat", bytes); }
    void WriteCount(uint32_t count) {
        WriteBytes(std::string(reinterpret_cast<const char*>(&count), sizeof(count)));
    }

    bool Reload(int timeout) {
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

TEST_F(HeartbeatReadTimerTest, CountsAreJudgedInPairs) {
    // The count, whether it was missed, and whether it is an error.
    const std::tuple<uint32_t, bool, bool> checks[] = {
        {7, false, false},           // the first count after the start, against 0
        {7, true, false},            // silence
        {8, false, false},           // progress
        {4294967295, false, false},  // the last count before the wrap
        {0, false, true},            // wrapped, and therefore an error
    };
    for (const auto& [count, missed, inError] : checks) {
        WriteCount(count);
        EXPECT_TRUE(Check()) << count;
        EXPECT_EQ(timer_.GetLastCount(), count);
        EXPECT_EQ(timer_.HeartbeatMissed(), missed) << count;
        EXPECT_EQ(timer_.InErrorState(), inError) << count;
    }
}

TEST_F(HeartbeatReadTimerTest, UnreadableFileKeepsTheLastCountAndLeaksNothing) {
    WriteCount(7);
    ASSERT_TRUE(Check());
    const auto before = OpenDescriptors();
    WriteBytes("abc");
    errno = ENOENT;  // stale: must not show in the line
    EXPECT_FALSE(Check());
    EXPECT_EQ(log_, "HeartbeatReadTimer: Read: Failed to read from the heartbeat file " + File() +
                        ": Success\n");
    EXPECT_EQ(timer_.GetLastCount(), 7U);
    EXPECT_EQ(timer_.GetPreviousCount(), 7U);
    unlink(File().c_str());
    EXPECT_FALSE(Check());
    EXPECT_EQ(log_, "HeartbeatReadTimer: Read: Failed to open the heartbeat file " + File() +
                        " for reading: No such file or directory\n");
    mkfifo(File().c_str(), 0600);  // must not wait for a writer
    EXPECT_FALSE(Check());
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(HeartbeatReadTimerTest, StartArmsAndASecondStartIsRefused) {
    EXPECT_FALSE(timer_.CheckNow());
    ASSERT_TRUE(Reload(1000));
    ASSERT_TRUE(timer_.Start());
    EXPECT_LT(timer_.GetSecondsToNextCheck(), 500U);  // a random delay below half the period
    Capture log(2);
    EXPECT_FALSE(timer_.Start());
    EXPECT_EQ(log.Stop(),
              "HeartbeatReadTimer: Start: Failed to start the timer because it is already "
              "active\n");
    WriteCount(3);
    EXPECT_TRUE(timer_.CheckNow());
    EXPECT_TRUE(Reload(1000));
    EXPECT_EQ(timer_.GetLastCount(), 3U);  // equal options change nothing
    EXPECT_TRUE(Reload(30));
    EXPECT_TRUE(timer_.IsActive());
    EXPECT_EQ(timer_.GetLastCount(), 0U);
    EXPECT_TRUE(timer_.Stop());
    EXPECT_TRUE(Reload(40));
    EXPECT_FALSE(timer_.IsActive());
}

TEST_F(HeartbeatReadTimerTest, TimeoutsThatReloadAcceptsAndRejects) {
    ASSERT_TRUE(timer_.Start());
    // The upper limit of 4294967 seconds is written down, never enforced.
    for (const int timeout : {INT32_MAX, 4294968}) {
        EXPECT_TRUE(Reload(timeout)) << timeout;
        EXPECT_EQ(timer_.GetTimeout(), static_cast<uint32_t>(timeout));
    }
    EXPECT_EQ(timer_.GetSecondsToNextCheck(), 0U);  // 704 ms are left in 32 bits
    for (const int timeout : {0, -1, -1}) {         // the same again is not skipped
        Capture log(2);
        EXPECT_FALSE(Reload(timeout)) << timeout;
        EXPECT_EQ(log.Stop(),
                  "HeartbeatReadTimer: Reload: Heartbeat timeout must be a positive integer: " +
                      std::to_string(timeout) + "\n");
        EXPECT_EQ(timer_.GetTimeout(), 10U);
        EXPECT_FALSE(timer_.IsActive());
    }
}

}  // namespace
