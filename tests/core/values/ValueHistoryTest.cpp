#include "core/values/ValueHistory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "core/output/StringWritable.h"

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

TEST_F(ValueHistoryTest, CaptureTakesItsSamplesAndPeriodicKeepsTheLast) {
    Console({"capture", "3", "60000"});
    for (size_t samples = 1; samples <= 3; ++samples) {
        EXPECT_TRUE(history_.IsSampling());
        history_.OnTimeout(0, nullptr);
        EXPECT_EQ(history_.SampleCount(), samples);
    }
    EXPECT_FALSE(history_.IsSampling());
    Console({"capture", "2", "60000"});
    Console({"periodic", "60000"});  // no longer ends with the capture
    for (int i = 0; i < 3; ++i) {
        history_.OnTimeout(0, nullptr);
    }
    EXPECT_TRUE(history_.IsSampling());
    EXPECT_EQ(history_.SampleCount(), 2U);
}

TEST_F(ValueHistoryTest, SamplesPrintAsBlocksOrAsATable) {
    Sample("5", 59999499);
    Sample("6", 4323283199999500);  // rounded up into the next year
    EXPECT_EQ(Console({"show"}),
              "\n---- 1970-01-01 00:00:59.999 ----\nn = 5\ntext = \"a\"\n"
              "\n---- 2107-01-01 00:00:00.000 ----\nn = 6\ntext = \"a\"\n");
    EXPECT_EQ(Console({"delta", "n", "a_name_of_15_ch"}),
              "#                      Time ,      delta_n , delta_a_name_of_15_ch \n"
              "    2107-01-01 00:00:00.000 ,         1.00 ,                     - \n");
}

}  // namespace
