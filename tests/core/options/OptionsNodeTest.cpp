#include "core/options/OptionsNode.h"

#include <gtest/gtest.h>

#include "core/output/StringWritable.h"
#include "tests/core/options/Json.h"

namespace Quenda {
namespace {

constexpr char kNotObject[] = "Invalid node type: OptionsNode must be object type";
constexpr char kTooDeep[] = "Invalid operation: OptionsNode is nested too deeply";

TEST(OptionsNodeTest, MembersAndElementsAreViewedOrNull) {
    const Json::Value doc = J("{'a':1,'n':null,'l':[7,null]}");
    const OptionsNode node(&doc, {3, 4});
    const OptionsNode list = node.GetMember("l");
    EXPECT_EQ(&node.GetMember("a").Value(), &doc["a"]);
    EXPECT_EQ(&list.GetElement(0).Value(), &doc["l"][0U]);
    for (const OptionsNode& absent : {node.GetMember("n"), node.GetMember("x"),
                                      node.GetMember(nullptr), list.GetElement(4294967295U)}) {
        EXPECT_TRUE(absent.IsObject() && absent.Value().isNull() && !absent.IsEmpty());
        EXPECT_EQ(absent.Context(), (OptionsContext{3, 4}));
    }
    EXPECT_TRUE(node.Error().IsAbsent() && list.Error().IsAbsent());
    EXPECT_TRUE(list.GetMember("a").Value().isNull() && node.GetElement(0).Value().isNull());
    EXPECT_STREQ(list.Error().Get(), kNotObject);
    EXPECT_STREQ(node.Error().Get(), "Invalid node type: OptionsNode must be array type");
}

TEST(OptionsNodeTest, PathsFailWithTheReasonAtTheirFirstObstacle) {
    const Json::Value doc = J("{'o':{'s':'x','n':null},'l':[{'a':1}]}");
    const Json::Value noMembers(Json::objectValue);
    const struct {
        OptionsNode node;
        OptionsPath path;
        const char* error;
    } cases[] = {
        {OptionsNode(&doc), {}, ""},
        {OptionsNode(&doc), {"o", "s"}, ""},
        {OptionsNode(&doc), {"o", "s", "x"}, "non-object OptionsNode down the path"},
        {OptionsNode(&doc), {"l", "a"}, "non-object OptionsNode down the path"},
        {OptionsNode(&doc), {"o", "absent"}, "empty OptionsNode down the path"},
        {OptionsNode(&doc), {"o", "n", "x"}, "empty OptionsNode down the path"},
        {OptionsNode(&noMembers), {}, "OptionsNode is empty"},
        {OptionsNode(), {}, "OptionsNode is empty"},
    };
    for (const auto& c : cases) {
        const OptionsNode found = c.node.GetNode(c.path);
        EXPECT_STREQ(c.node.Error().Get(), c.error);
        EXPECT_EQ(found.Value().isNull(), *c.error != '\0') << c.error;
    }
    EXPECT_EQ(&OptionsNode(&doc).GetNode({}).Value(), &doc);
}

TEST(OptionsNodeTest, TextsAreThoseOfTheScalars) {
    const Json::Value list = J("[-7,4294967295u,1.5,'t',true,null,[1],{'a':1}]");
    const char* texts[] = {"-7", "4294967295", "1.500000", "t", "true", "", "", "", "", ""};
    for (uint32_t i = 0; i < 10; ++i) {
        EXPECT_EQ(OptionsNode(&list).GetElementString(i), texts[i]) << i;
    }
    EXPECT_EQ(OptionsNode(list[7U]).GetMemberString("a"), "1");
    EXPECT_EQ(OptionsNode(&list).GetMemberString("a"), "");
    EXPECT_EQ(OptionsNode().GetElementString(0), "");
}

TEST(OptionsNodeTest, NumbersComeFromNumbersBooleansAndTexts) {
    const struct {
        Json::Value value;
        int32_t asInt;
        uint32_t asUInt;
        double asDouble;
        const char* error;
    } cases[] = {
        {J("' 42abc'"), 42, 42, 42.0, ""},
        {J("'-1'"), -1, 4294967295U, -1.0, ""},
        {J("true"), 1, 1, 1.0, ""},
        {J("2.75"), 2, 2, 2.75, ""},
        {J("'abc'"), 99, 99, 99.0, "invalid input string"},
        {J("[1]"), 99, 99, 99.0, "OptionsNode is not string type"},
        {J("null"), 99, 99, 99.0, "OptionsNode is not string type"},
        {Json::StaticString(nullptr), 99, 99, 99.0, "Cannot get the string value"},
    };
    for (const auto& c : cases) {
        const OptionsNode nodes[4];
        int32_t asInt = 99;
        uint32_t asUInt = 99;
        double asDouble = 99.0;
        float asFloat = 99.0F;
        const bool results[] = {nodes[0].GetInt(asInt, c.value), nodes[1].GetUInt(asUInt, c.value),
                                nodes[2].GetDouble(asDouble, c.value),
                                nodes[3].GetFloat(asFloat, c.value)};
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(results[i], *c.error == '\0') << i << ' ' << c.error;
            EXPECT_STREQ(nodes[i].Error().Get(), c.error) << i;
        }
        EXPECT_TRUE(asInt == c.asInt && asUInt == c.asUInt) << asInt << ' ' << asUInt;
        EXPECT_TRUE(asDouble == c.asDouble && double{asFloat} == asDouble) << asDouble;
    }
}

TEST(OptionsNodeTest, MemberValueIsTheDefaultWhenItCannotBeRead) {
    const OptionsNode object(J("{'a':'5','n':null,'bad':'x'}"));
    const OptionsNode array(J("[]"));
    const struct {
        const OptionsNode& node;
        const char* name;
        int32_t out;
        const char* error;
    } cases[] = {
        {object, "a", 5, ""},
        {object, "n", 9, "cannot find the node element"},
        {object, "absent", 9, "cannot find the node element"},
        {object, "bad", 9, "invalid input string"},
        {array, "a", 9, "Incorrect Node type for Object or Array operations"},
    };
    for (const auto& c : cases) {
        int32_t out = 0;
        double real = 0.0;
        EXPECT_EQ(c.node.GetMemberValue(out, c.name, 9), *c.error == '\0') << c.name;
        EXPECT_EQ(c.node.GetMemberValue(real, c.name, 9.0), *c.error == '\0') << c.name;
        EXPECT_TRUE(out == c.out && real == out) << c.name << ' ' << out << ' ' << real;
        EXPECT_STREQ(c.node.Error().Get(), c.error) << c.name;
    }
}

std::string seen;

void SeeMember(bool& stop, const char* name, const OptionsNode& node) {
    seen += name + OptionsNode::GetValueString(node.Value());
    stop = *name == 'b';
}

void SeeElement(bool& stop, uint32_t index, const OptionsNode& node) {
    seen += OptionsNode::GetValueString(node.Value());
    stop = index == 1;
}

TEST(OptionsNodeTest, WalksGoInOrderUntilTheVisitorStopsThem) {
    const OptionsNode object(J("{'c':3,'b':2,'B':1}"));
    const OptionsNode array(J("[4,5,6]"));
    const MemberVisitor members(
        new GlobalCallback<void(bool&, const char*, const OptionsNode&)>(SeeMember));
    const ElementVisitor elements(
        new GlobalCallback<void(bool&, uint32_t, const OptionsNode&)>(SeeElement));
    EXPECT_TRUE(object.ForEachMember(members) && array.ForEachElement(elements));
    EXPECT_FALSE(array.ForEachMember(members) || object.ForEachElement(elements));
    EXPECT_EQ(seen, "B1b245");
}

TEST(OptionsNodeTest, SelectedMembersReplaceTheResultsValue) {
    const MemberPredicate notB(
        new GlobalCallback<bool(const char*)>([](const char* name) { return *name != 'b'; }));
    const OptionsNode array(J("[4]"));
    OptionsNode node(J("{'c':3,'b':2,'B':1}"));
    EXPECT_TRUE(node.SelectMembers(notB, node));
    EXPECT_FALSE(OptionsNode(J("{'b':1}")).SelectMembers(notB, node));
    EXPECT_FALSE(array.SelectMembers(notB, node));
    EXPECT_STREQ(array.Error().Get(), kNotObject);
    EXPECT_EQ(Text(node.Value()), "{'B':1,'c':3}");
}

TEST(OptionsNodeTest, CopyKeepsAValueOfItsOwn) {
    OptionsNode copy = [] { return OptionsNode(OptionsNode(J("{'o':{'a':1}}"))); }();
    copy = copy.GetNode({"o"});  // a part of what it holds itself
    EXPECT_EQ(Text(copy.Value()), "{'a':1}");
}

TEST(OptionsNodeTest, TextFormsKeepCommentsOnlyWhenPrinted) {
    Json::Value doc = J("{'a':1,'o':{}}");
    doc["a"].setComment(std::string("//why"), Json::commentAfterOnSameLine);
    const OptionsNode node(&doc);
    StringWritable out;
    node.Print(&out, {"o"});
    node.Print(&out, {"absent"});
    node.Print(&out, {});
    EXPECT_EQ(out.Text(), "\n{\n   \"a\" : 1, //why\n   \"o\" : {}\n}\n\n");
    EXPECT_STREQ(node.GetCompactText().Get(), "{\"a\":1,\"o\":{}}\n");
    for (const OptionsNode& empty : {OptionsNode(), node.GetNode({"o"}), OptionsNode(nullptr)}) {
        EXPECT_TRUE(empty.GetCompactText().IsEmpty());
    }
}

TEST(OptionsNodeTest, ValuesNestedTooDeeplyAreRefused) {
    const Json::Value deep = Nested(10000);
    const OptionsNode view(&deep);
    StringWritable out;
    view.Print(&out, {"a"});
    EXPECT_TRUE(out.Text().empty() && view.GetCompactText().IsEmpty());
    EXPECT_STREQ(view.Error().Get(), kTooDeep);
    const OptionsNode copy(deep);
    EXPECT_TRUE(copy.Value().isNull());
    EXPECT_STREQ(copy.Error().Get(), kTooDeep);
    EXPECT_EQ(OptionsNode(Nested(1000)).GetCompactText().Length(), 6005U);
}

}  // namespace
}  // namespace Quenda
