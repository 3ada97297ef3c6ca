// Everything that an options node can be asked.
#include <cstring>

#include "core/options/JsonValue.h"
#include "core/output/StringWritable.h"
#include "core/values/ValueList.h"
#include "fuzz/OptionsFuzz.h"
#include "fuzz/Require.h"
#include "json/writer.h"

using Quenda::GlobalCallback;
using Quenda::OptionsNode;
using Quenda::ValueDefinition;
using Quenda::JsonValue::kMaxNesting;

namespace {

void VisitMember(bool& stop, const char* name, const OptionsNode& member) {
    (void)member.GetCompactText();
    stop = *name == 'l';
}

void VisitElement(bool& stop, uint32_t index, const OptionsNode& element) {
    (void)element.GetElementString(index);
    stop = index == 100;
}

bool SelectMember(const char* name) {
    return std::strlen(name) < 3;
}

// A getter that fails leaves its output alone and says why; with a default it gives that.
template <typename T, typename Get>
void AskNumber(const OptionsNode& node, const char* name, Get get) {
    constexpr T kBefore = 77;
    T number = kBefore;
    const bool got = (node.*get)(number, node.Value());
    REQUIRE(got || (number == kBefore && !node.Error().IsEmpty()));
    number = 0;
    REQUIRE(node.GetMemberValue(number, name, kBefore) || number == kBefore);
}

void AskNumbers(const OptionsNode& node, const char* name) {
    AskNumber<int32_t>(node, name, &OptionsNode::GetInt);
    AskNumber<uint32_t>(node, name, &OptionsNode::GetUInt);
    AskNumber<double>(node, name, &OptionsNode::GetDouble);
    AskNumber<float>(node, name, &OptionsNode::GetFloat);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

// The text is that of the library's own writer.
void AskCompactText(const OptionsNode& node) {
    const std::string text = node.GetCompactText().Get();
    if (!node.Value().empty() && !Quenda::JsonValue::NestsDeeperThan(node.Value(), kMaxNesting)) {
        Json::FastWriter writer;
        REQUIRE(text == writer.write(node.Value()));
    }
}

#pragma GCC diagnostic pop

void AskPath(FuzzInput& input, const OptionsNode& node) {
    Quenda::OptionsPath path;
    const Json::Value* value = &node.Value();
    for (auto left = input.ConsumeIntegralInRange(0, 4); left > 0; --left) {
        path.push_back(RandomName(input, *value));
        const Json::Value* const member = Quenda::JsonValue::FindMember(*value, path.back());
        value = member == nullptr ? value : member;
    }
    const OptionsNode found = node.GetNode(path);
    REQUIRE(!found.Value().isNull() || !node.Error().IsEmpty());
    Quenda::StringWritable text;
    node.Print(&text, path);
    AskCompactText(found);
}

void Walk(const OptionsNode& node) {
    (void)node.ForEachMember(Quenda::MemberVisitor(
        new GlobalCallback<void(bool&, const char*, const OptionsNode&)>(VisitMember)));
    (void)node.ForEachElement(Quenda::ElementVisitor(
        new GlobalCallback<void(bool&, uint32_t, const OptionsNode&)>(VisitElement)));
}

void Select(const OptionsNode& node) {
    OptionsNode selected;
    const bool any = node.SelectMembers(
        Quenda::MemberPredicate(new GlobalCallback<bool(const char*)>(SelectMember)), selected);
    REQUIRE(any == !selected.IsEmpty());
    (void)selected.GetCompactText();
}

void LoadValues(const OptionsNode& node) {
    Quenda::ValueList values({ValueDefinition::Int("a", -1), ValueDefinition::Double("b", 0.5),
                              ValueDefinition::Text("list", nullptr),
                              ValueDefinition::UInt("id", 1)});
    REQUIRE(values.Load(node) == node.IsObject());
    Quenda::StringWritable text;
    values.Command(&text, 0, nullptr);
}

}  // namespace

void AskOptions(OptionsFuzz& fuzz) {
    FuzzInput& input = fuzz.input;
    const OptionsNode node(&RandomPart(input, fuzz.options));
    const char* const name = RandomName(input, node.Value());
    const auto index = input.ConsumeIntegralInRange<uint32_t>(0, 4);
    switch (input.ConsumeIntegralInRange(0, 7)) {
        case 0:
            return AskNumbers(node, name);
        case 1:
            return AskNumbers(node.GetMember(name), name);
        case 2:
            return AskNumbers(node.GetElement(index), name);
        case 3:
            (void)node.GetMemberString(name);
            (void)node.GetElementString(index);
            return (void)OptionsNode::GetValueString(node.Value());
        case 4:
            return AskPath(input, node);
        case 5:
            return Walk(node);
        case 6:
            return Select(node);
        default: {
            const OptionsNode own(node.Value());
            OptionsNode copy(own);
            copy = own;
            return LoadValues(copy);
        }
    }
}
