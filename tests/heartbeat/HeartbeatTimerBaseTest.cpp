#include "heartbeat/HeartbeatTimerBase.h"

#include "core/timer/TimeKeeper.h"
#include "tests/heartbeat/HeartbeatFixture.h"

namespace {

class HeartbeatTimerBaseTest : public HeartbeatFixture {};

TEST_F(HeartbeatTimerBaseTest, StartArmsAndASecondStartIsRefused) {
    EXPECT_EQ(timer_.GetSecondsToNextCheck(), 0U);
    ASSERT_TRUE(Reload(1000U));
    ASSERT_TRUE(timer_.Start());
    EXPECT_EQ(Quenda::TimeKeeper::Instance().ActiveCount(), 1U);
    EXPECT_LT(timer_.GetSecondsToNextCheck(), 500U);  // a random delay below half the period
    Capture log(2);
    EXPECT_FALSE(timer_.Start());
    EXPECT_EQ(log.Stop(),
              "HeartbeatReadTimer: Start: Failed to start the timer because it is already "
              "active\n");
}

TEST_F(HeartbeatTimerBaseTest, TimeoutsThatReloadAcceptsAndRejects) {
    // The upper limit of 4294967 seconds is written down, never enforced.
    for (const int timeout : {4294968, INT32_MAX, 1}) {
        EXPECT_TRUE(Reload(timeout)) << timeout;
        EXPECT_EQ(timer_.GetTimeout(), static_cast<uint32_t>(timeout));
    }
    ASSERT_TRUE(timer_.Start());
    EXPECT_TRUE(Reload(4294968));
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
    EXPECT_TRUE(Reload(4294968));  // those that were applied before are not skipped either
    EXPECT_EQ(timer_.GetTimeout(), 4294968U);
}

TEST_F(HeartbeatTimerBaseTest, ReloadRestartsOnlyAnActiveTimerAndSkipsEqualOptions) {
    ASSERT_TRUE(Reload(20U));
    ASSERT_TRUE(timer_.Start());
    WriteCount(9);
    ASSERT_TRUE(Check());
    EXPECT_TRUE(Reload(20U));
    EXPECT_EQ(timer_.GetLastCount(), 9U);  // nothing happened
    EXPECT_TRUE(Reload(30U));
    EXPECT_TRUE(timer_.IsActive());
    EXPECT_EQ(timer_.GetLastCount(), 0U);
    EXPECT_TRUE(timer_.Stop());
    EXPECT_TRUE(Reload(40U));
    EXPECT_FALSE(timer_.IsActive());
}

}  // namespace
