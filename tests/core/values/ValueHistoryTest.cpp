#include "core/values/ValueHistory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "core/output/StringWritable.h"
#include "core/timer/TimeKeeper.h"
#include "core/values/ValueHistoryTable.h"

namespace Quenda {
namespace {

using Words = std::vector<const char*>;

class ValueHistoryTest : public testing::Test {
protected:
    ValueHistoryTest() {
        setenv("TZ", "UTC", 1);
        tzset();
    }

    std::string Console(const Words& words) {
        StringWritable out;
        history_.Command(&out, static_cast<int>(words.size()), words.data());
        return out.Text();
    }

    // A sample of "n" at so many microseconds after the first second of 1970.
    void Sample(const char* n, int32_t microseconds) {
        list_.Find("n")->SetFromText(n);
        history_.TakeSnapshot({microseconds / 1000000, microseconds % 1000000});
    }

    ValueList list_{{ValueDefinition::Int("n", 0), ValueDefinition::Text("text", "a")}};
    ValueList::History history_{list_};
};

TEST_F(ValueHistoryTest, CommandsCheckTheirNumbers) {
    const std::string usage = Console({});
    EXPECT_EQ(usage,
              "show [keys...] | capture {num_samples} {interval_ms} | size {num_samples} | "
              "snapshot | periodic {interval_ms} | reset | stop | delta {keys...} | rate "
              "{keys...}\n");
    const struct {
        Words words;
        std::string output;
        bool sampling;
    } cases[] = {
        {{"periodic", "9"}, "Invalid timer interval\n", false},
        {{"PERIODIC", "10"}, "Capturing samples periodically every 10 milliseconds.\n", true},
        {{"periodic", "10", "10"}, usage, true},
        {{"Stop"}, "", false},
        {{"capture", "0", "100"}, "num_samples must be greater than zero.\n", false},
        {{"capture", "5", "49"}, "Invalid timer interval\n", false},
        {{"capture", "5", "50"},
         "Capturing 5 samples periodically at a spacing of 50 milliseconds.\n",
         true},
        {{"reset"}, "", true},
        {{"size", "0"}, "", true},
        {{"size", "3x"}, "Set maximum history size to 3\n", true},
        {{"stop"}, "", false},
        {{"delta"}, "Please provide one or more key names to display.\n", false},
        {{"rate", "n"},
         "Not enough data to display. Need at least two rows.\n"
         "Use 'snapshot', 'capture', or 'periodic' commands to capture.\n",
         false},
        {{"bogus"}, usage, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Console(c.words), c.output) << c.words[0];
        EXPECT_EQ(history_.IsSampling(), c.sampling) << c.words[0];
    }
}

TEST_F(ValueHistoryTest, CaptureTakesItsSamplesAndStops) {
    Console({"snapshot"});
    Console({"capture", "12", "60000"});
    EXPECT_EQ(history_.SampleCount(), 0U);
    TimeValue now = TimeValue::Now();
    for (size_t expiry = 1; expiry <= 13; ++expiry) {
        now.AddMilliseconds(60000);
        TimeKeeper::Instance().ProcessExpired(now);
        EXPECT_EQ(history_.SampleCount(), std::min(expiry + 1, size_t{12})) << expiry;
        EXPECT_EQ(history_.IsSampling(), expiry < 11) << expiry;
    }
}

TEST_F(ValueHistoryTest, PeriodicKeepsTheLastSamplesAndOutlivesACapture) {
    Console({"capture", "2", "60000"});
    Console({"periodic", "60000"});
    for (int i = 0; i < 3; ++i) {
        history_.OnTimeout(0, nullptr);
    }
    EXPECT_TRUE(history_.IsSampling());
    EXPECT_EQ(history_.SampleCount(), 2U);
    Console({"size", "1"});
    EXPECT_EQ(history_.SampleCount(), 1U);
}

TEST_F(ValueHistoryTest, MillisecondsAreRoundedIntoTheNextSecond) {
    EXPECT_EQ(SampleTimeText({59, 999499}), "1970-01-01 00:00:59.999");
    EXPECT_EQ(SampleTimeText({59, 999500}), "1970-01-01 00:01:00.000");
    EXPECT_EQ(SampleTimeText({0, 1500}), "1970-01-01 00:00:00.002");
}

TEST_F(ValueHistoryTest, SamplesPrintAsBlocksOrAsATable) {
    Sample("5", 1500000);
    EXPECT_EQ(Console({"show"}), "\n---- 1970-01-01 00:00:01.500 ----\nn = 5\ntext = \"a\"\n");
    EXPECT_EQ(Console({"show", "n", "a_name_of_15_ch", "text"}),
              "#                      Time ,            n , a_name_of_15_ch ,         text \n"
              "    1970-01-01 00:00:01.500 ,            5 ,               - ,         \"a\"\n"
              " \n");
}

TEST_F(ValueHistoryTest, ChangesAndRatesAreTakenBetweenNeighbours) {
    Sample("10", 0);
    Sample("13", 500000);
    Sample("12", 500000);  // no time has passed
    Sample("14", 400000);  // the clock was set back
    EXPECT_EQ(Console({"delta", "n", "x"}),
              "#                      Time ,      delta_n ,      delta_x \n"
              "    1970-01-01 00:00:00.500 ,         3.00 ,            - \n"
              "    1970-01-01 00:00:00.500 ,        -1.00 ,            - \n"
              "    1970-01-01 00:00:00.400 ,         2.00 ,            - \n");
    EXPECT_EQ(Console({"Rate", "n"}),
              "#                      Time ,          d_n \n"
              "    1970-01-01 00:00:00.500 ,         6.00 \n"
              "    1970-01-01 00:00:00.500 ,      no time \n"
              "    1970-01-01 00:00:00.400 ,      no time \n");
}

}  // namespace
}  // namespace Quenda
