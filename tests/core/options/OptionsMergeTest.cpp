#include <gtest/gtest.h>

#include "core/options/OptionsNodeEdit.h"
#include "tests/core/options/Json.h"

namespace Quenda {
namespace {

constexpr char kType[] = "Invalid operation: cannot change type of existing OptionsNodeEdit";
constexpr char kIds[] = "/l: Array IDs type does not match destination type";
constexpr char kNoArray[] = "/l: Cannot merge array to non-array";
constexpr char kManyIds[] = "/l: Multiple elements in array IDs";
constexpr char kId[] = "{'l':[{'id':0}]}";

TEST(OptionsMergeTest, ChangesAreMergedOrTheFirstObstacleNamed) {
    const struct {
        const char *before, *source, *ids, *error, *after;
    } cases[] = {
        {"null", "{'a':null}", "null", "", "{'a':null}"},
        {"{'a':5}", "null", "null", "", "{'a':5}"},
        {"{'a':5}", "{'b':null}", "null", "", "{'a':5,'b':null}"},
        {"{'a':5}", "{'a':{}}", "null", "/a: Cannot merge object to non-object", "{'a':5}"},
        {"{'b':5}", "{'a':1,'b':'x'}", "null", kType, "{'a':1,'b':5}"},  // no way back
        {"{'a':5}", "{'a':true}", "null", kType, "{'a':5}"},
        {"{'a':5}", "{'a':2.5}", "null", "", "{'a':2.5}"},
        {"{'l':{'a':5}}", "{'l':{'a':6}}", "{'l':[]}", kIds, "{'l':{'a':5}}"},
        // Arrays as a whole.
        {"{'l':[1,2]}", "{'l':['x']}", "null", "", "{'l':['x']}"},
        {"{'l':1}", "{'l':[]}", "null", kNoArray, "{'l':1}"},
        {"{'l':[]}", "{'l':1}", "null", kType, "{'l':[]}"},
        {"{'l':null}", "{'l':[1]}", "{'l':{}}", kNoArray, "{'l':null}"},
        {"{'l':[]}", "{'l':[1]}", "{'l':1}", kIds, "{'l':[]}"},
        {"{'l':[]}", "{'l':[]}", "{'l':[]}", kManyIds, "{'l':[]}"},
        {"{'l':null}", "{'l':[]}", "{'l':[1,1]}", kManyIds, "{'l':null}"},
        {"{'l':null}", "{'l':[1,null]}", "{'l':[1]}", "", "{'l':[1,null]}"},
        // Elements by their IDs: the first that matches, also among those just added.
        {"{'l':[{'id':1},{'id':2,'v':0}]}", "{'l':[null,{'id':2,'v':9},{'id':3}]}", kId, "",
         "{'l':[{'id':1},{'id':2,'v':9},{'id':3}]}"},
        {"{'l':[{'id':1},{'id':1}]}", "{'l':[{'id':1,'v':9}]}", kId, "",
         "{'l':[{'id':1,'v':9},{'id':1}]}"},
        {"{'l':[]}", "{'l':[{'id':1,'v':1},{'id':1,'v':2}]}", kId, "", "{'l':[{'id':1,'v':2}]}"},
        {"{'l':[{'id':1}]}", "{'l':[null,{}]}", kId, "/l[1]: Missing array ID in source options",
         "{'l':[{'id':1}]}"},
        {"{'l':[{}]}", "{'l':[{'id':1}]}", kId, "/l[0]: Missing array ID in destination options",
         "{'l':[{}]}"},
        {"{'l':[{'id':1}]}", "{'l':[{'id':1}]}", "{'l':[{'id':true}]}",
         "/l[0]: Array elements not comparable", "{'l':[{'id':1}]}"},
        {"{'l':[null]}", "{'l':['x']}", kId, "/l[0]: Missing array ID in source options",
         "{'l':[null]}"},
        // A null element matches whatever no member identifies; 1 and an unsigned 1 differ.
        {"{'l':[1,null]}", "{'l':[2,1u,1]}", "{'l':[0]}", "", "{'l':[1,2,1]}"},
        {"{'l':[{'id':1}]}", "{'l':[{'id':2}]}", "{'l':[{'id':null}]}", "", "{'l':[{'id':2}]}"},
        {"{'l':[{'id':1,'v':1}]}", "{'l':[{'id':1,'v':{}}]}", kId,
         "/l//v: Cannot merge object to non-object", "{'l':[{'id':1,'v':1}]}"},
    };
    for (const auto& c : cases) {
        Json::Value document = J(c.before);
        bool modified = false;
        OptionsNodeEdit node(&document, &modified);
        (void)node.SetComment(nullptr);  // an earlier message
        const bool merged = node.Merge(OptionsNode(J(c.source)), OptionsNode(J(c.ids)));
        EXPECT_EQ(merged, *c.error == '\0') << c.before << c.source;
        EXPECT_STREQ(node.Error().Get(), c.error) << c.before << c.source;
        EXPECT_EQ(Text(document), c.after) << c.before << c.source;
        EXPECT_TRUE(modified) << c.before << c.source;
    }
}

TEST(OptionsMergeTest, TreesNestedTooDeeplyAreRefusedUnchanged) {
    const Json::Value deep = Nested(10000);
    const Json::Value limit = Nested(1000);
    Json::Value document;
    bool modified = false;
    OptionsNodeEdit node(&document, &modified);
    EXPECT_FALSE(node.Merge(OptionsNode(&deep), OptionsNode()));
    EXPECT_STREQ(node.Error().Get(), "Invalid operation: OptionsNode is nested too deeply");
    (void)node.Overlay(OptionsNode(&deep), 4294967295U);
    EXPECT_FALSE(modified);
    document = Nested(10000);
    EXPECT_TRUE(node.Merge(OptionsNode(&limit), OptionsNode(&limit)));
    (void)node.Overlay(OptionsNode(&limit), 4294967295U);
}

}  // namespace
}  // namespace Quenda
