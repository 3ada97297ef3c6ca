#include "core/options/OptionsNodeEdit.h"
#include "tests/core/options/Json.h"

using namespace Quenda;

namespace {

// Values, paths and messages are held against a model (OptionsModelTest).

TEST(OptionsMergeTest, FailureKeepsWhatWasMergedAndSuccessClearsTheMessage) {
    Json::Value document = J("{'b':5}");
    bool modified = false;
    OptionsNodeEdit node(&document, &modified);
    EXPECT_FALSE(node.Merge(OptionsNode(J("{'a':1,'b':true}")), OptionsNode()));
    EXPECT_STREQ(node.Error().Get(),
                 "Invalid operation: cannot change type of existing OptionsNodeEdit");
    EXPECT_EQ(Text(document), "{'a':1,'b':5}");
    EXPECT_TRUE(modified);
    EXPECT_TRUE(node.Merge(OptionsNode(J("{'b':2.5}")), OptionsNode()));
    EXPECT_TRUE(node.Error().IsEmpty());
}

}  // namespace
