#include "fuzz/OptionsModel.h"

#include <random>

#include "fuzz/CompareOptions.h"
#include "fuzz/RandomDocument.h"
#include "tests/core/options/Json.h"

using namespace Quenda;

namespace {

using OptionsModel::Describe;

TEST(OptionsModelTest, MergesAndOverlaysOfGeneratedTreesComeToWhatAModelSays) {
    const char* const given = std::getenv("KELDRA_TEST_SEED");
    const unsigned long seed = given == nullptr ? std::random_device{}() : std::stoul(given);
    std::cout << "KELDRA_TEST_SEED=" << seed << "\n";
    std::mt19937 random(static_cast<uint32_t>(seed));
    int merged = 0, stoppedHalfway = 0;
    for (unsigned round = 0; round < 3000 && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE(testing::Message() << "KELDRA_TEST_SEED=" << seed << ", round " << round);
        std::vector<uint8_t> bytes(600);
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<uint8_t>(random()); });
        FuzzInput input(bytes.data(), bytes.size());
        const MergeTrees trees = RandomMerge(input);
        Json::Value document(trees.before);
        OptionsNodeEdit node(&document, nullptr);
        EXPECT_EQ(CompareMerge(node, trees.source, trees.ids), "");
        const bool failed = !node.Error().IsEmpty();
        merged += failed ? 0 : 1;
        stoppedHalfway += failed && Describe(document) != Describe(trees.before) ? 1 : 0;
        document = trees.before;
        EXPECT_EQ(CompareOverlay(node, trees.source, round % 4), "");
    }
    EXPECT_GT(merged, 1000);
    EXPECT_GT(stoppedHalfway, 100);
}

}  // namespace
