#include "fuzz/options_model/OptionsExercise.h"

#include "core/options/OptionsNode.h"
#include "core/output/StringWritable.h"
#include "fuzz/Require.h"

namespace OptionsModel {

namespace {

using namespace Quenda;

template <typename Key>
void Visit(bool& stop, Key /*nameOrIndex*/, const OptionsNode& node) {
    (void)node.GetCompactText();
    stop = node.Value().isNull();
}

bool SelectMember(const char* name) {
    return *name != 'l';
}

// A getter that fails leaves its output unchanged and has a message; with a default it returns
// that.
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
    (void)OptionsNode::GetValueString(node.Value());
}

void AskPath(RandomInput& input, const OptionsNode& node) {
    const OptionsPath path(input.Number(0, 4), RandomName(input, node.Value()));
    const OptionsNode found = node.GetNode(path);
    REQUIRE(!found.Value().isNull() || !node.Error().IsEmpty());
    StringWritable text;
    node.Print(&text, path);
    REQUIRE(found.GetCompactText().IsEmpty() == text.Text().empty());
}

void Walk(const OptionsNode& node) {
    (void)node.ForEachMember(MakeCallback(Visit<const char*>));
    (void)node.ForEachElement(MakeCallback(Visit<uint32_t>));
    OptionsNode selected;
    REQUIRE(node.SelectMembers(MakeCallback(SelectMember), selected) == !selected.IsEmpty());
}

// Makes one random query of the value.
void AskOptions(RandomInput& input, const Json::Value& value) {
    const OptionsNode node(&value);
    switch (input.Number(0, 2)) {
        case 0:
            return AskNumbers(node, RandomName(input, value));
        case 1:
            return AskPath(input, node);
        default:
            return Walk(OptionsNode(value));  // a node with its own copy
    }
}

}  // namespace

MergeCounts ExerciseOptions(const uint8_t* data, size_t size) {
    RandomInput input(data, size);
    // Documents are never copied here: one may be too deep for that.
    Trial trial{input, RandomDocument(input), Json::Value(), Json::Value(), {}};
    trial.changes = input.OneIn(4) ? RandomDocument(input) : RandomChanges(input, trial.options);
    trial.arrayIds = RandomArrayIds(input, trial.changes);
    while (!input.IsEmpty()) {
        if (input.OneIn(4)) {
            AskOptions(input, RandomPart(input, trial.options));
        } else {
            EditOptions(trial);
        }
    }
    return trial.merges;
}

}  // namespace OptionsModel
