#include "heartbeat/HeartbeatReadTimer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
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
        {0, true, true},
        {1, false, false},
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
    const std::string read = "read from the heartbeat file " + File() + ": ";
    const std::tuple<std::function<void()>, std::string, uint32_t> cases[] = {
        {[this] { WriteBytes(""); }, read + "Success", 7},
        {[this] { WriteBytes("abc"); }, read + "Success", 7},
        {[this] { unlink(File().c_str()); },
         "open the heartbeat file " + File() + " for reading: No such file or directory", 6},
        {[this] { mkdir(File().c_str(), 0700); }, read + "Is a directory", 7},
        // Without a writer: end of file, at once.
        {[this] { mkfifo(File().c_str(), 0600); }, read + "Success", 7}};
    const auto before = OpenDescriptors();
    for (const auto& [spoil, reason, previousCount] : cases) {
        for (const uint32_t count : {6U, 7U}) {
            WriteCount(count);
            ASSERT_TRUE(Check());
        }
        remove(File().c_str());
        spoil();
        errno = ENOENT;  // stale: must not show in the line
        EXPECT_FALSE(Check());
        EXPECT_EQ(log_, "HeartbeatReadTimer: Read: Failed to " + reason + "\n");
        EXPECT_EQ(timer_.GetLastCount(), 7U);
        EXPECT_EQ(timer_.GetPreviousCount(), previousCount) << reason;
        EXPECT_EQ(OpenDescriptors(), before);
        remove(File().c_str());
    }
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
    std::vector<bool> results;
    timer_.OnTimeout(0, nullptr);  // no callback yet: read all the same
    WriteCount(5);
    timer_.SetResultCallback(Quenda::CallbackRef1<bool>(
        new CallbackTo<void(bool)>([&](bool result) { results.push_back(result); })));
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
