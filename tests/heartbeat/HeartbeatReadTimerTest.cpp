#include "heartbeat/HeartbeatReadTimer.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "tests/heartbeat/HeartbeatFixture.h"
#include "tests/support/Descriptors.h"

using Quenda::CallbackRef1;
using Quenda::GlobalCallback1;

namespace {

class HeartbeatReadTimerTest : public HeartbeatFixture {
protected:
    HeartbeatReadTimerTest() { EXPECT_TRUE(Reload(10U)); }
};

std::vector<bool> results;
void Collect(bool result) {
    results.push_back(result);
}

TEST_F(HeartbeatReadTimerTest, CountsAreJudgedInPairs) {
    const struct {
        uint32_t count;
        bool missed;
        bool inError;
    } checks[] = {
        {7, false, false},           // the first count after the start, against 0
        {7, true, false},            // silence
        {8, false, false},           // progress
        {4294967295, false, false},  // the last count before the wrap
        {0, false, true},            // wrapped, and therefore an error
        {0, true, true},
        {1, false, false},
    };
    for (const auto& c : checks) {
        WriteCount(c.count);
        EXPECT_TRUE(Check()) << c.count;
        EXPECT_EQ(timer_.GetLastCount(), c.count);
        EXPECT_EQ(timer_.HeartbeatMissed(), c.missed) << c.count;
        EXPECT_EQ(timer_.InErrorState(), c.inError) << c.count;
    }
}

TEST_F(HeartbeatReadTimerTest, ShortFileKeepsTheLastCountAndLeaksNothing) {
    WriteCount(6);
    ASSERT_TRUE(Check());
    WriteCount(7);
    ASSERT_TRUE(Check());
    const auto before = OpenDescriptors();
    for (const char* bytes : {"", "abc"}) {
        WriteBytes(bytes);
        errno = ENOENT;  // stale: must not show in the line
        EXPECT_FALSE(Check());
        EXPECT_EQ(log_, "HeartbeatReadTimer: Read: Failed to read from the heartbeat file " +
                            File() + ": Success\n");
        EXPECT_EQ(timer_.GetLastCount(), 7U);
        EXPECT_EQ(timer_.GetPreviousCount(), 7U);
        EXPECT_TRUE(timer_.HeartbeatMissed());
    }
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(HeartbeatReadTimerTest, MissingFileLeavesTheCountsUntouched) {
    WriteCount(6);
    ASSERT_TRUE(Check());
    WriteCount(7);
    ASSERT_TRUE(Check());
    unlink(File().c_str());
    EXPECT_FALSE(Check());
    EXPECT_EQ(log_, "HeartbeatReadTimer: Read: Failed to open the heartbeat file " + File() +
                        " for reading: No such file or directory\n");
    EXPECT_EQ(timer_.GetLastCount(), 7U);
    EXPECT_EQ(timer_.GetPreviousCount(), 6U);
}

TEST_F(HeartbeatReadTimerTest, UnreadableKindsOfFilesFailWithoutBlocking) {
    ASSERT_EQ(mkdir(File().c_str(), 0700), 0);
    EXPECT_FALSE(Check());
    EXPECT_EQ(log_, "HeartbeatReadTimer: Read: Failed to read from the heartbeat file " + File() +
                        ": Is a directory\n");
    rmdir(File().c_str());
    ASSERT_EQ(mkfifo(File().c_str(), 0600), 0);
    EXPECT_FALSE(Check());  // without a writer: end of file, at once
}

TEST_F(HeartbeatReadTimerTest, OpenTwiceIsRefusedUntilStop) {
    WriteCount(1);
    ASSERT_TRUE(timer_.Open("Read"));
    EXPECT_TRUE(timer_.IsActive());
    EXPECT_FALSE(Check());
    EXPECT_NE(log_.find("HeartbeatReadTimer: Read: Refusing to open the heartbeat file " + File() +
                        " for reading because it is already open: "),
              std::string::npos);
    EXPECT_TRUE(timer_.Stop());
    EXPECT_FALSE(timer_.IsActive());
    EXPECT_TRUE(Check());
}

TEST_F(HeartbeatReadTimerTest, TimedChecksReportToTheCallbackAndOthersDoNot) {
    results.clear();
    timer_.OnTimeout(0, nullptr);  // no callback yet: read all the same
    WriteCount(5);
    timer_.SetResultCallback(CallbackRef1<bool>(new GlobalCallback1<bool>(Collect)));
    timer_.OnTimeout(0, nullptr);
    EXPECT_EQ(timer_.GetLastCount(), 5U);
    unlink(File().c_str());
    timer_.OnTimeout(0, nullptr);
    EXPECT_FALSE(Check());
    timer_.ClearResultCallback();
    timer_.OnTimeout(0, nullptr);
    EXPECT_EQ(results, (std::vector<bool>{true, false}));
}

}  // namespace
