#include "core/values/ValueHistory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "core/output/StringWritable.h"
#include "core/timer/TimeKeeper.h"

using namespace Quenda;

namespace {

struct ValueHistoryTest : testing::Test {
    ValueHistoryTest() {
        setenv("TZ", "UTC", 1);
        tzset();
    }

    std::string Console(const std::vector<const char*>& words) {
        StringWritable out;
        history_.Command(&out, static_cast<int>(words.size()), words.data());
        return out.Text();
    }

    // A sample of "n" at so many microseconds since 1970.
    void Sample(const char* n, int64_t microseconds) {
        list_.Find("n")->SetFromText(n);
        history_.TakeSnapshot(
            {microseconds / 1000000, static_cast<int32_t>(microseconds % 1000000)});
    }

    ValueList list_{{ValueDefinition::Int("n", 0), ValueDefinition::Text("text", "a")}};
    ValueList::History history_{list_};
};

TEST_F(ValueHistoryTest, CommandsCheckTheirNumbers) {
    const std::string usage =
        "show [keys...] | capture {num_samples} {interval_ms} | size {num_samples} | snapshot | "
        "periodic {interval_ms} | reset | stop | delta {keys...} | rate {keys...}\n";
    EXPECT_EQ(Console({"periodic", "9"}), "Invalid timer interval\n");
    EXPECT_EQ(Console({"capture", "5", "49"}), "Invalid timer interval\n");
    EXPECT_EQ(Console({"capture", "0", "49"}), "num_samples must be greater than zero.\n");
    EXPECT_EQ(Console({"periodic", "10", "10"}) + Console({}), usage + usage);
    EXPECT_FALSE(history_.IsSampling());
    EXPECT_EQ(Console({"PERIODIC", "10"}),
              "Capturing samples periodically every 10 milliseconds.\n");
    EXPECT_EQ(Console({"Stop"}), "");
    EXPECT_FALSE(history_.IsSampling());
    EXPECT_EQ(Console({"capture", "1", "50"}),
              "Capturing 1 samples periodically at a spacing of 50 milliseconds.\n");
    EXPECT_EQ(Console({"size", "0"}) + Console({"reset"}), "");
    EXPECT_TRUE(history_.IsSampling());
    EXPECT_EQ(Console({"size", "3x"}), "Set maximum history size to 3\n");
    EXPECT_EQ(Console({"delta"}), "Please provide one or more key names to display.\n");
    EXPECT_EQ(Console({"rate", "n"}),
              "Not enough data to display. Need at least two rows.\n"
              "Use 'snapshot', 'capture', or 'periodic' commands to capture.\n");
}

TEST_F(ValueHistoryTest, CaptureTakesItsSamplesAndPeriodicKeepsTheLast) {
    Console({"snapshot"});
    Console({"capture", "3", "60000"});
    TimeValue now = TimeValue::Now();
    for (size_t expiry = 0; expiry < 4; ++expiry) {
        EXPECT_TRUE(history_.SampleCount() == expiry && history_.IsSampling() == (expiry < 3));
        TimeKeeper::Instance().ProcessExpired(now);
        now.AddMilliseconds(60000);
    }
    Console({"capture", "2", "60000"});
    Console({"periodic", "60000"});  // no longer ends with the capture
    for (int i = 0; i < 3; ++i) {
        history_.OnTimeout(0, nullptr);
    }
    EXPECT_TRUE(history_.IsSampling() && history_.SampleCount() == 2);
}

TEST_F(ValueHistoryTest, SamplesPrintAsBlocksOrAsATable) {
    Sample("5", 59999499);
    Sample("6", 4323283199999500);  // rounded up into the next year
    EXPECT_EQ(Console({"show"}),
              "\n---- 1970-01-01 00:00:59.999 ----\nn = 5\ntext = \"a\"\n"
              "\n---- 2107-01-01 00:00:00.000 ----\nn = 6\ntext = \"a\"\n");
    Console({"size", "1"});
    EXPECT_EQ(Console({"show", "n", "a_name_of_15_ch", "text"}),
              "#                      Time ,            n , a_name_of_15_ch ,         text \n"
              "    2107-01-01 00:00:00.000 ,            6 ,               - ,         \"a\"\n"
              " \n");
}

TEST_F(ValueHistoryTest, ChangesAndRatesAreTakenBetweenNeighbours) {
    Sample("10", 0);
    Sample("13", 500000);
    Sample("12", 500000);  // no time has passed
    EXPECT_EQ(Console({"delta", "n", "x"}),
              "#                      Time ,      delta_n ,      delta_x \n"
              "    1970-01-01 00:00:00.500 ,         3.00 ,            - \n"
              "    1970-01-01 00:00:00.500 ,        -1.00 ,            - \n");
    EXPECT_EQ(Console({"Rate", "n"}),
              "#                      Time ,          d_n \n"
              "    1970-01-01 00:00:00.500 ,         6.00 \n"
              "    1970-01-01 00:00:00.500 ,      no time \n");
}

}  // namespace
