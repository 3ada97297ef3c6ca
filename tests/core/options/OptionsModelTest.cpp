// The random edits of fuzz/, always the same ones here: scripts/fuzz looks for others.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "fuzz/OptionsFuzz.h"
#include "tests/support/Capture.h"

TEST(OptionsModelTest, EditsOfGeneratedTreesComeToWhatAModelSays) {
    Capture complaints(1);  // about numbers out of range
    std::mt19937 random(1);
    std::vector<uint8_t> bytes(600);
    for (int round = 0; round < 5000; ++round) {
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<uint8_t>(random()); });
        (void)LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    (void)complaints.Stop();
    EXPECT_GT(mergesDone, 1000);
    EXPECT_GT(mergesStoppedHalfway, 100);
}
