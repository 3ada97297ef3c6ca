#include "heartbeat/HeartbeatReadTimer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "tests/heartbeat/HeartbeatFixture.h"
#include "tests/support/CallbackTo.h"
#include "tests/support/Descriptors.h"

namespace {

struct HeartbeatReadTimerTest : HeartbeatFixture {
    HeartbeatReadTimerTest() { EXPECT_TRUE(Reload(10U)); }
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

TEST_F(HeartbeatReadTimerTest, ShortFileKeepsTheLastCountAndLeaksNothing) {
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
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(HeartbeatReadTimerTest, PipeInTheFilesPlaceStopsNothing) {
    mkfifo(File().c_str(), 0600);
    EXPECT_FALSE(Check());
    unlink(File().c_str());
    EXPECT_FALSE(Check());
    EXPECT_EQ(log_, "HeartbeatReadTimer: Read: Failed to open the heartbeat file " + File() +
                        " for reading: No such file or directory\n");
}

TEST_F(HeartbeatReadTimerTest, TimedChecksReportToTheCallbackAndOthersDoNot) {
    std::vector<bool> results;
    timer_.SetResultCallback(Quenda::CallbackRef1<bool>(
        new CallbackTo<void(bool)>([&](bool result) { results.push_back(result); })));
    WriteCount(5);
    timer_.OnTimeout(0, nullptr);
    unlink(File().c_str());
    timer_.OnTimeout(0, nullptr);
    EXPECT_FALSE(Check());
    timer_.ClearResultCallback();
    timer_.OnTimeout(0, nullptr);
    EXPECT_EQ(results, (std::vector<bool>{true, false}));
}

}  // namespace
