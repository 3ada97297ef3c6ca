// Random edits, always the same ones here: scripts/fuzz looks for others.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>

#include "fuzz/options_model/OptionsExercise.h"
#include "tests/support/Capture.h"

TEST(OptionsModelTest, EditsOfGeneratedTreesComeToWhatAModelSays) {
    Capture complaints(1);  // about numbers out of range
    std::mt19937 random(1);
    std::vector<uint8_t> bytes(600);
    OptionsModel::MergeCounts all;
    std::string wrong;
    for (int round = 0; round < 5000 && wrong.empty(); ++round) {
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<uint8_t>(random()); });
        try {
            const auto merges = OptionsModel::ExerciseOptions(bytes.data(), bytes.size());
            all.done += merges.done;
            all.stoppedHalfway += merges.stoppedHalfway;
        } catch (const std::logic_error& failure) {
            wrong = "round " + std::to_string(round) + ", " + failure.what();
        }
    }
    (void)complaints.Stop();
    EXPECT_EQ(wrong, "");
    EXPECT_GT(all.done, 1000);
    EXPECT_GT(all.stoppedHalfway, 100);
}
