#include "core/options/OptionsNode.h"

#include <gtest/gtest.h>

#include "core/output/StringWritable.h"
#include "tests/core/options/Json.h"

namespace Quenda {
namespace {

constexpr char kNotObject[] = "Invalid node type: OptionsNode must be object type";
constexpr char kNotArray[] = "Invalid node type: OptionsNode must be array type";
constexpr char kTooDeep[] = "Invalid operation: OptionsNode is nested too deeply";

TEST(OptionsNodeTest, MembersAndElementsAreViewedOrNull) {
    Json::Value doc = Obj({{"a", 1}, {"n", Json::Value()}, {"l", Arr({7, Json::Value()})}});
    const OptionsNode node(&doc, {3, 4});
    EXPECT_EQ(&node.GetMember("a").Value(), &doc["a"]);
    EXPECT_EQ(node.GetMember("a").Context(), (OptionsContext{3, 4}));
    for (const char* name : {"n", "absent", static_cast<const char*>(nullptr)}) {
        const OptionsNode member = node.GetMember(name);
        EXPECT_TRUE(member.Value().isNull());
        EXPECT_FALSE(member.IsEmpty());
        EXPECT_TRUE(member.IsObject());
        EXPECT_EQ(member.Context(), (OptionsContext{3, 4}));
    }
    const OptionsNode list = node.GetMember("l");
    EXPECT_EQ(&list.GetElement(0).Value(), &doc["l"][0U]);
    EXPECT_TRUE(list.GetElement(1).Value().isNull());
    EXPECT_TRUE(list.GetElement(4294967295U).Value().isNull());
    EXPECT_TRUE(node.Error().IsAbsent());
    EXPECT_TRUE(list.GetMember("a").Value().isNull());
    EXPECT_STREQ(list.Error().Get(), kNotObject);
    EXPECT_TRUE(node.GetElement(0).Value().isNull());
    EXPECT_STREQ(node.Error().Get(), kNotArray);
    (void)OptionsNode().GetMember("a");
    EXPECT_FALSE(OptionsNode().IsObject());
}

TEST(OptionsNodeTest, PathsFailWithTheReasonAtTheirFirstObstacle) {
    const Json::Value doc =
        Obj({{"o", Obj({{"s", "x"}, {"n", Json::Value()}})}, {"l", Arr({Obj({{"a", 1}})})}});
    const Json::Value noMembers = Obj({});
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
        {OptionsNode(&doc), {"o", nullptr}, "empty OptionsNode down the path"},
        {OptionsNode(&doc), {"o", "n"}, "empty OptionsNode down the path"},
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
    const Json::Value list =
        Arr({-7, 4294967295U, 1.5, "t", true, Json::Value(), Arr({1}), Obj({{"a", 1}})});
    const char* texts[] = {"-7", "4294967295", "1.500000", "t", "true", "", "", "", "", ""};
    for (uint32_t i = 0; i < 10; ++i) {
        EXPECT_EQ(OptionsNode(&list).GetElementString(i), texts[i]) << i;
    }
    EXPECT_EQ(OptionsNode(Obj({{"a", 3}})).GetMemberString("a"), "3");
    EXPECT_EQ(OptionsNode(&list).GetMemberString("a"), "");
    EXPECT_EQ(OptionsNode().GetElementString(0), "");
    EXPECT_EQ(OptionsNode::GetCommentText(nullptr), "//");
}

TEST(OptionsNodeTest, NumbersComeFromNumbersBooleansAndTexts) {
    const Json::Value null{Json::StaticString(nullptr)};
    const struct {
        Json::Value value;
        int32_t asInt;
        uint32_t asUInt;
        double asDouble;
        const char* error;
    } cases[] = {
        {Json::Value(" 42abc"), 42, 42, 42.0, ""},
        {Json::Value("0x10"), 16, 0, 16.0, ""},
        {Json::Value("-1"), -1, 4294967295U, -1.0, ""},
        {Json::Value(true), 1, 1, 1.0, ""},
        {Json::Value(2.75), 2, 2, 2.75, ""},
        {Json::Value("abc"), 99, 99, 99.0, "invalid input string"},
        {Json::Value(""), 99, 99, 99.0, "invalid input string"},
        {Arr({1}), 99, 99, 99.0, "OptionsNode is not string type"},
        {Json::Value(), 99, 99, 99.0, "OptionsNode is not string type"},
        {null, 99, 99, 99.0, "Cannot get the string value"},
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
        EXPECT_EQ(asInt, c.asInt) << c.error;
        EXPECT_EQ(asUInt, c.asUInt) << c.error;
        EXPECT_EQ(asDouble, c.asDouble) << c.error;
        EXPECT_EQ(asFloat, static_cast<float>(c.asDouble)) << c.error;
    }
}

TEST(OptionsNodeTest, MemberValueIsTheDefaultWhenItCannotBeRead) {
    const Json::Value doc = Obj({{"a", "5"}, {"n", Json::Value()}, {"bad", "x"}});
    const OptionsNode node(&doc);
    int32_t out = 0;
    EXPECT_TRUE(node.GetMemberValue(out, "a", 9));
    EXPECT_EQ(out, 5);
    for (const char* name : {"n", "absent", "bad"}) {
        EXPECT_FALSE(node.GetMemberValue(out, name, 9)) << name;
        EXPECT_EQ(out, 9) << name;
        EXPECT_STREQ(node.Error().Get(),
                     *name == 'b' ? "invalid input string" : "cannot find the node element");
    }
    const OptionsNode array(Arr({}));
    double real = 0.0;
    EXPECT_FALSE(array.GetMemberValue(real, "a", 2.5));
    EXPECT_EQ(real, 2.5);
    EXPECT_STREQ(array.Error().Get(), "Incorrect Node type for Object or Array operations");
}

struct Visitor {
    std::string seen;
    void Member(bool& stop, const char* name, const OptionsNode& node) {
        seen += name + OptionsNode::GetValueString(node.Value());
        stop = *name == 'b';
    }
    void Element(bool& stop, uint32_t index, const OptionsNode& node) {
        seen += OptionsNode::GetValueString(node.Value());
        stop = index == 1;
    }
    bool Select(const char* name) { return *name != 'b'; }
};

TEST(OptionsNodeTest, WalksGoInOrderUntilTheVisitorStopsThem) {
    const OptionsNode object(Obj({{"c", 3}, {"b", 2}, {"B", 1}}));
    const OptionsNode array(Arr({4, 5, 6}));
    Visitor visitor;
    const MemberVisitor members(
        new MemberCallback<Visitor, void(bool&, const char*, const OptionsNode&)>(
            &visitor, &Visitor::Member));
    const ElementVisitor elements(
        new MemberCallback<Visitor, void(bool&, uint32_t, const OptionsNode&)>(&visitor,
                                                                               &Visitor::Element));
    EXPECT_TRUE(object.ForEachMember(members));
    EXPECT_TRUE(array.ForEachElement(elements));
    EXPECT_FALSE(array.ForEachMember(members));
    EXPECT_FALSE(object.ForEachElement(elements));
    EXPECT_EQ(visitor.seen, "B1b245");

    const MemberPredicate predicate(
        new MemberCallback<Visitor, bool(const char*)>(&visitor, &Visitor::Select));
    OptionsNode selected;
    EXPECT_TRUE(object.SelectMembers(predicate, selected));
    EXPECT_EQ(Text(selected.Value()), R"({"B":1,"c":3})");
    EXPECT_TRUE(selected.SelectMembers(predicate, selected));  // out of itself
    EXPECT_FALSE(OptionsNode(Obj({{"b", 1}})).SelectMembers(predicate, selected));
    EXPECT_EQ(Text(selected.Value()), R"({"B":1,"c":3})");
    EXPECT_FALSE(array.SelectMembers(predicate, selected));
    EXPECT_STREQ(array.Error().Get(), kNotObject);
}

TEST(OptionsNodeTest, CopiesKeepTheirOwnValueAndShareADocuments) {
    const Json::Value doc = Obj({{"o", Obj({{"a", 1}})}});
    OptionsNode copy;
    {
        const OptionsNode own(doc);
        copy = own;
        (void)copy.GetElement(0);
    }
    copy = copy.GetNode({"o"});  // a part of what it holds itself
    EXPECT_EQ(Text(copy.Value()), R"({"a":1})");
    EXPECT_EQ(&OptionsNode(OptionsNode(&doc)).Value(), &doc);
    const OptionsNode failed(copy.GetMember("a"));
    (void)failed.GetMember("x");
    EXPECT_STREQ(OptionsNode(failed).Error().Get(), kNotObject);
}

TEST(OptionsNodeTest, TextFormsKeepCommentsOnlyWhenPrinted) {
    Json::Value doc = Obj({{"a", 1}, {"o", Obj({})}});
    doc["a"].setComment(std::string("//why"), Json::commentAfterOnSameLine);
    const OptionsNode node(&doc);
    StringWritable out;
    node.Print(&out, {"o"});
    node.Print(&out, {"absent"});
    EXPECT_EQ(out.Text(), "");
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
    EXPECT_STREQ(view.Error().Get(), kTooDeep);
    EXPECT_TRUE(view.GetCompactText().IsEmpty());
    EXPECT_EQ(out.Text(), "");
    const OptionsNode copy(deep);
    EXPECT_TRUE(copy.Value().isNull());
    EXPECT_STREQ(copy.Error().Get(), kTooDeep);
    EXPECT_EQ(OptionsNode(Nested(1000)).GetCompactText().Length(), 6005U);
}

}  // namespace
}  // namespace Quenda
