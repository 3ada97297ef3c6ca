#include "heartbeat/HeartbeatTimerBase.h"

#include "core/timer/TimeKeeper.h"
#include "tests/heartbeat/HeartbeatFixture.h"

using Quenda::OptionsNodeEdit;
using Quenda::TimeKeeper;

namespace {

class HeartbeatTimerBaseTest : public HeartbeatFixture {};

TEST_F(HeartbeatTimerBaseTest, BornIdleWithDefaults) {
    EXPECT_FALSE(timer_.IsActive());
    EXPECT_STREQ(timer_.GetFilename(), "/var/run/quenda/keldra.heartbeat");
    EXPECT_EQ(timer_.GetTimeout(), 10U);
    EXPECT_EQ(timer_.GetSecondsToNextCheck(), 0U);
    EXPECT_TRUE(timer_.InErrorState());
    EXPECT_FALSE(timer_.CheckNow());
}

TEST_F(HeartbeatTimerBaseTest, StartArmsAndASecondStartIsRefused) {
    ASSERT_TRUE(Reload(1000U));
    EXPECT_TRUE(timer_.Start());
    EXPECT_TRUE(timer_.IsActive());
    EXPECT_EQ(TimeKeeper::Instance().ActiveCount(), 1U);
    EXPECT_LT(timer_.GetSecondsToNextCheck(), 500U);  // a random delay below half the period
    Capture log(2);
    EXPECT_FALSE(timer_.Start());
    EXPECT_EQ(log.Stop(),
              "HeartbeatReadTimer: Start: Failed to start the timer because it is already "
              "active\n");
}

TEST_F(HeartbeatTimerBaseTest, TimeoutsThatReloadAcceptsAndRejects) {
    const struct {
        int timeout;
        bool accepted;
    } cases[] = {
        {1, true},       {299, true},       {4294967, true},    {4294968, true},
        {5000000, true}, {INT32_MAX, true},  // the upper limit is written down but never enforced
        {0, false},      {-1, false},       {INT32_MIN, false},
    };
    for (const auto& c : cases) {
        Capture log(2);
        EXPECT_EQ(Reload(c.timeout), c.accepted) << c.timeout;
        const std::string line = log.Stop();
        EXPECT_EQ(timer_.GetTimeout(), c.accepted ? static_cast<uint32_t>(c.timeout) : 10U);
        EXPECT_EQ(line, c.accepted ? ""
                                   : "HeartbeatReadTimer: Reload: Heartbeat timeout must be a "
                                     "positive integer: " +
                                         std::to_string(c.timeout) + "\n");
    }
}

TEST_F(HeartbeatTimerBaseTest, PeriodOfALongTimeoutWrapsAt32Bits) {
    ASSERT_TRUE(Reload(4294968));  // 4,294,968,000 ms, of which 704 are left
    ASSERT_TRUE(timer_.Start());
    EXPECT_EQ(timer_.GetSecondsToNextCheck(), 0U);
}

TEST_F(HeartbeatTimerBaseTest, UnsignedTimeoutBeyondTheSignedRangeIsTheTargets) {
    // What -t -1 and -t 4294967295 come to: the text is read as a signed 32-bit number, which
    // stops at its largest.
    Capture log(2);
    EXPECT_TRUE(Reload(4294967295U));
    EXPECT_EQ(log.Stop(), "");
    EXPECT_EQ(timer_.GetTimeout(), static_cast<uint32_t>(INT32_MAX));
}

TEST_F(HeartbeatTimerBaseTest, EqualOptionsChangeNothingEvenWhenStopped) {
    ASSERT_TRUE(Reload(20U));
    ASSERT_TRUE(timer_.Start());
    ASSERT_TRUE(timer_.Stop());
    EXPECT_TRUE(Reload(20U));
    EXPECT_FALSE(timer_.IsActive());
}

TEST_F(HeartbeatTimerBaseTest, ReloadRestartsOnlyAnActiveTimerAndForgetsTheCount) {
    ASSERT_TRUE(Reload(20U));
    ASSERT_TRUE(timer_.Start());
    WriteCount(9);
    ASSERT_TRUE(Check());
    EXPECT_TRUE(Reload(30U));
    EXPECT_TRUE(timer_.IsActive());
    EXPECT_EQ(timer_.GetLastCount(), 0U);
}

TEST_F(HeartbeatTimerBaseTest, FailedReloadStopsTheTimerAndIsTriedAgain) {
    ASSERT_TRUE(Reload(20U));
    ASSERT_TRUE(timer_.Start());
    for (int i = 0; i < 2; ++i) {
        Capture log(2);
        EXPECT_FALSE(Reload(0U));  // the second time, too: the same options are not skipped
        EXPECT_NE(log.Stop(), "");
        EXPECT_FALSE(timer_.IsActive());
    }
    EXPECT_TRUE(Reload(20U));
}

TEST_F(HeartbeatTimerBaseTest, CheckNowReadsAndRestartsThePeriod) {
    ASSERT_TRUE(Reload(1000U));
    ASSERT_TRUE(timer_.Start());
    WriteCount(3);
    EXPECT_TRUE(timer_.CheckNow());
    EXPECT_EQ(timer_.GetLastCount(), 3U);
    EXPECT_EQ(TimeKeeper::Instance().ActiveCount(), 1U);
    WriteBytes("");
    Capture log(2);
    EXPECT_FALSE(timer_.CheckNow());
    EXPECT_TRUE(timer_.IsActive());
}

TEST_F(HeartbeatTimerBaseTest, OptionsThatAreMissingOrEmptyTakeTheirDefaults) {
    OptionsNodeEdit options;
    options.SetLeaf("heartbeat_filename", "", nullptr);
    options.SetLeaf("unknown", 1U, nullptr);
    EXPECT_TRUE(timer_.Reload(options));
    EXPECT_STREQ(timer_.GetFilename(), "/var/run/quenda/keldra.heartbeat");
    EXPECT_EQ(timer_.GetTimeout(), 10U);
}

}  // namespace
