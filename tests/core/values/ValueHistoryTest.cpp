#include "core/values/ValueHistory.h"

#include <gtest/gtest.h>

#include "core/output/StringWritable.h"

using namespace Quenda;

namespace {

struct ValueHistoryTest : testing::Test {
    std::string Console(const std::vector<const char*>& words) {
        StringWritable out;
        history_.Command(&out, static_cast<int>(words.size()), words.data());
        return out.Text();
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

}  // namespace
