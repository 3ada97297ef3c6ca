// Everything that changes an options tree.
#include "core/options/JsonValue.h"
#include "fuzz/CompareOptions.h"
#include "fuzz/OptionsFuzz.h"
#include "fuzz/Require.h"

using Quenda::OptionsNode;
using Quenda::OptionsNodeEdit;
using Quenda::JsonValue::kMaxNesting;
using Quenda::JsonValue::NestsDeeperThan;

namespace {

constexpr unsigned kMaxModelNesting = 100;  // deeper ones take the model too long

// A part of the changes or of the options themselves, which the edit is about to change.
OptionsNode RandomSource(OptionsFuzz& fuzz) {
    const bool own = fuzz.input.ConsumeIntegralInRange(0, 3) == 1;
    return OptionsNode(&RandomPart(fuzz.input, own ? fuzz.options : fuzz.changes));
}

// Refused, an edit leaves its message and marks no change.
void RequireOutcome(const OptionsNodeEdit& node, bool done, bool modified) {
    REQUIRE(done ? modified : !node.Error().IsEmpty() && !modified);
}

void RequireNone(const std::string& difference) {
    if (!difference.empty()) {
        (void)std::fprintf(stderr, "%s\n", difference.c_str());
    }
    REQUIRE(difference.empty());
}

void Merge(OptionsFuzz& fuzz) {
    FuzzInput& input = fuzz.input;
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(input, fuzz.options), &modified);
    // May be gone afterwards, when it is a part of the options.
    const OptionsNode source = RandomSource(fuzz);
    const bool tooDeep = NestsDeeperThan(source.Value(), kMaxNesting);
    const bool compare = !NestsDeeperThan(source.Value(), kMaxModelNesting) &&
                         !NestsDeeperThan(node.Value(), kMaxModelNesting) &&
                         !NestsDeeperThan(fuzz.arrayIds, kMaxModelNesting);
    const bool merge = input.ConsumeBool();
    const auto levels = input.ConsumeIntegralInRange(0U, 4U);
    if (compare) {
        RequireNone(merge ? CompareMerge(node, source.Value(), fuzz.arrayIds)
                          : CompareOverlay(node, source.Value(), levels));
    } else if (merge) {
        REQUIRE(node.Merge(source, OptionsNode(&fuzz.arrayIds)) == node.Error().IsEmpty());
    } else {
        REQUIRE(!node.Overlay(source, levels));
    }
    const bool failed = !node.Error().IsEmpty();
    REQUIRE(modified ? !tooDeep && (merge || !failed) : failed);
}

bool SetLeaf(FuzzInput& input, OptionsNodeEdit& node, const char* name) {
    const std::string text = RandomText(input);
    const char* const comment = RandomName(input);
    switch (input.ConsumeIntegralInRange(0, 4)) {
        case 0:
            return node.SetLeaf(name, text, comment);
        case 1:
            return node.SetLeaf(name, RandomName(input), comment);
        case 2:
            return node.SetLeaf(name, input.ConsumeIntegral<uint32_t>(), comment);
        case 3:
            return node.SetLeaf(name, input.ConsumeIntegral<int32_t>(), comment);
        default:
            return node.SetLeaf(name, input.ConsumeFloatingPoint<double>(), comment);
    }
}

void EditMember(OptionsFuzz& fuzz) {
    FuzzInput& input = fuzz.input;
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(input, fuzz.options), &modified);
    const char* const name = RandomName(input, node.Value());
    switch (input.ConsumeIntegralInRange(0, 3)) {
        case 0:
            return RequireOutcome(node, SetLeaf(input, node, name), modified);
        case 1:
            return RequireOutcome(
                node, node.AddMember(name, RandomSource(fuzz), input.ConsumeBool()), modified);
        case 2:
            return RequireOutcome(node, node.ModifyMember(name, RandomSource(fuzz)), modified);
        default:
            return RequireOutcome(
                node, node.RenameMember(name, RandomName(input), input.ConsumeBool()), modified);
    }
}

void MoveOrRemove(OptionsFuzz& fuzz) {
    FuzzInput& input = fuzz.input;
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(input, fuzz.options), &modified);
    const char* const name = RandomName(input, node.Value());
    if (input.ConsumeBool()) {
        (void)node.RemoveMember(name);
    } else {
        Json::Value& document = input.ConsumeBool() ? fuzz.options : fuzz.changes;
        OptionsNodeEdit destination(&RandomPart(input, document), &modified);
        const bool moved = node.MoveMember(destination, RandomName(input, destination.Value()),
                                           name, input.ConsumeBool());
        REQUIRE(!moved || modified);
    }
}

void EditArray(OptionsFuzz& fuzz) {
    FuzzInput& input = fuzz.input;
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(input, fuzz.options), &modified);
    const auto index = input.ConsumeIntegralInRange<uint32_t>(0, 5);
    switch (input.ConsumeIntegralInRange(0, 3)) {
        case 0:
            return RequireOutcome(node, node.Append(RandomSource(fuzz)), modified);
        case 1:
            return RequireOutcome(node, node.SetElement(index, RandomSource(fuzz)), modified);
        case 2:
            REQUIRE(!node.Truncate(index) || node.Value().size() == index);
            return;
        default:
            REQUIRE(node.SetComment(RandomName(input)) || !node.Error().IsEmpty());
            return;
    }
}

}  // namespace

void EditOptions(OptionsFuzz& fuzz) {
    switch (fuzz.input.ConsumeIntegralInRange(0, 5)) {
        case 0:
        case 1:
            return Merge(fuzz);
        case 2:
        case 3:
            return EditMember(fuzz);
        case 4:
            return MoveOrRemove(fuzz);
        default:
            return EditArray(fuzz);
    }
}
