#include "heartbeat/HeartbeatTimerBase.h"

#include "core/timer/TimeKeeper.h"
#include "tests/heartbeat/HeartbeatFixture.h"

namespace {

class HeartbeatTimerBaseTest : public HeartbeatFixture {};

TEST_F(HeartbeatTimerBaseTest, StartArmsAndASecondStartIsRefused) {
    EXPECT_FALSE(timer_.CheckNow());  // idle: nothing to do
    EXPECT_EQ(timer_.GetSecondsToNextCheck(), 0U);
    ASSERT_TRUE(Reload(1000U) && timer_.Start());
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
    for (const int timeout : {4294968, INT32_MAX, 1, 0, -1}) {
        const bool accepted = timeout > 0;
        Capture log(2);
        EXPECT_EQ(Reload(timeout), accepted) << timeout;
        EXPECT_EQ(log.Stop(), accepted ? ""
                                       : "HeartbeatReadTimer: Reload: Heartbeat timeout must be a "
                                         "positive integer: " +
                                             std::to_string(timeout) + "\n");
        EXPECT_EQ(timer_.GetTimeout(), accepted ? static_cast<uint32_t>(timeout) : 10U);
        // A rejected timeout takes the file name along.
        EXPECT_EQ(timer_.GetFilename() == File(), accepted);
    }
    // What -t -1 comes to: the text is read as a signed 32-bit number, which stops at its largest.
    EXPECT_TRUE(Reload(4294967295U));
    EXPECT_EQ(timer_.GetTimeout(), static_cast<uint32_t>(INT32_MAX));
    // 4,294,968,000 ms: 704 of them are left in 32 bits.
    ASSERT_TRUE(Reload(4294968) && timer_.Start());
    EXPECT_EQ(timer_.GetSecondsToNextCheck(), 0U);
}

TEST_F(HeartbeatTimerBaseTest, ReloadRestartsOnlyAnActiveTimerAndSkipsEqualOptions) {
    ASSERT_TRUE(Reload(20U) && timer_.Start());
    WriteCount(9);
    ASSERT_TRUE(Check());
    EXPECT_TRUE(Reload(20U));
    EXPECT_EQ(timer_.GetLastCount(), 9U);  // nothing happened
    EXPECT_TRUE(Reload(30U));
    EXPECT_TRUE(timer_.IsActive());
    EXPECT_EQ(timer_.GetLastCount(), 0U);
    EXPECT_TRUE(timer_.Stop() && Reload(30U));
    EXPECT_FALSE(timer_.IsActive());
}

TEST_F(HeartbeatTimerBaseTest, FailedReloadStopsTheTimerAndIsTriedAgain) {
    ASSERT_TRUE(Reload(20U) && timer_.Start());
    for (int i = 0; i < 2; ++i) {
        Capture log(2);
        EXPECT_FALSE(Reload(0U));  // the second time, too: the same options are not skipped
        EXPECT_FALSE(timer_.IsActive());
    }
    EXPECT_TRUE(Reload(20U));
    EXPECT_EQ(timer_.GetTimeout(), 20U);
}

TEST_F(HeartbeatTimerBaseTest, CheckNowReadsAndRestartsThePeriod) {
    ASSERT_TRUE(Reload(1000U) && timer_.Start());
    WriteCount(3);
    EXPECT_TRUE(timer_.CheckNow());
    EXPECT_EQ(timer_.GetLastCount(), 3U);
    EXPECT_EQ(Quenda::TimeKeeper::Instance().ActiveCount(), 1U);
    WriteBytes("");
    Capture log(2);
    EXPECT_FALSE(timer_.CheckNow());
    EXPECT_TRUE(timer_.IsActive());
}

}  // namespace
