#include "fuzz/options_model/OptionsEdits.h"

#include "core/options/OptionsNodeEdit.h"
#include "core/options/internal/JsonTree.h"
#include "fuzz/Require.h"
#include "fuzz/options_model/OptionsModel.h"

namespace OptionsModel {

namespace {

using namespace Quenda;
using JsonTree::NestsDeeperThan;

constexpr unsigned kMaxModelNesting = 100;  // deeper ones take the model too long

// A part of the changes, or sometimes of the options that the edit will change.
OptionsNode RandomSource(Trial& trial) {
    return OptionsNode(
        &RandomPart(trial.input, trial.input.OneIn(4) ? trial.options : trial.changes));
}

void RequireEqual(const std::string& found, const std::string& wanted, const std::string& before) {
    if (found != wanted) {
        throw std::logic_error(before + "\ncame to " + found + "\ninstead of " + wanted);
    }
}

// Makes a merge or an overlay, and compares the result with the model's unless that takes too long.
void MergeOrOverlay(Trial& trial) {
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(trial.input, trial.options), &modified);
    const OptionsNode source = RandomSource(trial);
    const OptionsNode ids(trial.input.OneIn(4) ? nullptr : &trial.arrayIds);
    const bool merge = trial.input.Flip();
    const unsigned levels = trial.input.Number(0, 4);
    const bool tooDeep = NestsDeeperThan(source.Value(), OptionsNode::kMaxNesting) ||
                         (merge && NestsDeeperThan(ids.Value(), OptionsNode::kMaxNesting));
    const bool compare = !NestsDeeperThan(source.Value(), kMaxModelNesting) &&
                         !NestsDeeperThan(ids.Value(), kMaxModelNesting) &&
                         !NestsDeeperThan(node.Value(), kMaxModelNesting);
    const std::string before = compare ? Describe(node.Value()) : "";
    std::string message;
    std::string wanted;
    if (compare) {
        const Json::Value changes(source.Value());  // may be a part of the options
        Json::Value model(node.Value());
        if (merge) {
            message = Merge(model, changes, ids.Value());
        } else {
            model = Overlay(model, changes, levels);
        }
        wanted = Describe(model);
    }
    const bool merged = merge ? node.Merge(source, ids) : node.Overlay(source, levels);
    REQUIRE(modified == !tooDeep && merged == (merge && node.Error().IsEmpty()));
    if (compare) {
        const std::string found = Describe(node.Value());
        RequireEqual(node.Error().Get(), message.c_str(), before);
        RequireEqual(found, wanted, before);
        trial.merges.done += merged && found != before ? 1 : 0;
        trial.merges.stoppedHalfway += merge && !merged && found != before ? 1 : 0;
    }
}

bool Edit(Trial& trial, OptionsNodeEdit& node, const char* name) {
    RandomInput& input = trial.input;
    const char* const other = RandomName(input);  // a comment or a second name
    switch (input.Number(0, 9)) {
        case 0:
            return node.SetLeaf(name, RandomText(input), other);
        case 1:
            return node.SetLeaf(name, RandomName(input), other);
        case 2:
            return node.SetLeaf(name, input.Bits<uint32_t>(), other);
        case 3:
            return node.SetLeaf(name, input.Bits<int32_t>(), other);
        case 4:
            return node.SetLeaf(name, input.Bits<double>(), other);
        case 5:
            return node.AddMember(name, RandomSource(trial), input.Flip());
        case 6:
            return node.ModifyMember(name, RandomSource(trial));
        case 7:
            return node.RenameMember(name, other, input.Flip());
        case 8:
            return node.Append(RandomSource(trial));
        default:
            return node.SetElement(input.Number(0, 5), RandomSource(trial));
    }
}

void EditOne(Trial& trial) {
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(trial.input, trial.options), &modified);
    const bool done = Edit(trial, node, RandomName(trial.input, node.Value()));
    // An edit that is refused has a message and marks no change.
    REQUIRE(modified == done && node.Error().IsEmpty() == done);
}

// Edits that may fail without a message, or mark no change.
void Remove(Trial& trial) {
    RandomInput& input = trial.input;
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(input, trial.options), &modified);
    const char* const name = RandomName(input, node.Value());
    if (input.Flip()) {
        Json::Value& document = input.Flip() ? trial.options : trial.changes;
        OptionsNodeEdit destination(&RandomPart(input, document), &modified);
        const bool moved = node.MoveMember(destination, RandomName(input, destination.Value()),
                                           name, input.Flip());
        REQUIRE(!moved || modified);
    } else if (input.Flip()) {
        REQUIRE(node.RemoveMember(name) == modified);
    } else if (input.Flip()) {
        const unsigned size = input.Number(0, 5);
        REQUIRE(!node.Truncate(size) || node.Value().size() == size);
    } else {
        REQUIRE(node.SetComment(RandomName(input)) == node.Error().IsEmpty());
    }
}

}  // namespace

void EditOptions(Trial& trial) {
    if (trial.input.Flip()) {
        MergeOrOverlay(trial);
    } else if (trial.input.Flip()) {
        EditOne(trial);
    } else {
        Remove(trial);
    }
}

}  // namespace OptionsModel
