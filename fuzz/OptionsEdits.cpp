// Everything that changes an options tree.
#include "core/options/JsonValue.h"
#include "core/options/OptionsNodeEdit.h"
#include "fuzz/OptionsFuzz.h"
#include "fuzz/OptionsModel.h"
#include "fuzz/Require.h"

using namespace Quenda;
using JsonValue::NestsDeeperThan;
using OptionsModel::Describe;

int mergesDone = 0;
int mergesStoppedHalfway = 0;

namespace {

constexpr unsigned kMaxModelNesting = 100;  // deeper ones take the model too long

// A part of the changes, or of the options themselves, which the edit is about to change.
OptionsNode RandomSource(OptionsFuzz& fuzz) {
    return OptionsNode(&RandomPart(fuzz.input, fuzz.input.OneIn(4) ? fuzz.options : fuzz.changes));
}

void RequireEqual(const std::string& found, const std::string& wanted, const std::string& before) {
    if (found != wanted) {
        (void)std::fprintf(stderr, "%s\ncame to %s\ninstead of %s\n", before.c_str(), found.c_str(),
                           wanted.c_str());
    }
    REQUIRE(found == wanted);
}

// A merge or an overlay, held against the model's unless they would take the model too long.
void Merge(OptionsFuzz& fuzz) {
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(fuzz.input, fuzz.options), &modified);
    const OptionsNode source = RandomSource(fuzz);
    const OptionsNode ids(fuzz.input.OneIn(4) ? nullptr : &fuzz.arrayIds);
    const bool merge = fuzz.input.Flip();
    const unsigned levels = fuzz.input.Number(0, 4);
    const bool tooDeep = NestsDeeperThan(source.Value(), JsonValue::kMaxNesting) ||
                         (merge && NestsDeeperThan(ids.Value(), JsonValue::kMaxNesting));
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
            message = OptionsModel::Merge(model, changes, ids.Value());
        } else {
            model = OptionsModel::Overlay(model, changes, levels);
        }
        wanted = Describe(model);
    }
    const bool merged = merge ? node.Merge(source, ids) : node.Overlay(source, levels);
    REQUIRE(modified == !tooDeep);
    REQUIRE(merged == (merge && node.Error().IsEmpty()));
    if (compare) {
        const std::string found = Describe(node.Value());
        RequireEqual(node.Error().Get(), message.c_str(), before);
        RequireEqual(found, wanted, before);
        mergesDone += merged && found != before ? 1 : 0;
        mergesStoppedHalfway += merge && !merged && found != before ? 1 : 0;
    }
}

bool SetLeaf(FuzzInput& input, OptionsNodeEdit& node, const char* name) {
    const char* const comment = RandomName(input);
    switch (input.Number(0, 4)) {
        case 0:
            return node.SetLeaf(name, RandomText(input), comment);
        case 1:
            return node.SetLeaf(name, RandomName(input), comment);
        case 2:
            return node.SetLeaf(name, input.Bits<uint32_t>(), comment);
        case 3:
            return node.SetLeaf(name, input.Bits<int32_t>(), comment);
        default:
            return node.SetLeaf(name, input.Bits<double>(), comment);
    }
}

bool Edit(OptionsFuzz& fuzz, OptionsNodeEdit& node, const char* name) {
    FuzzInput& input = fuzz.input;
    switch (input.Number(0, 5)) {
        case 0:
            return SetLeaf(input, node, name);
        case 1:
            return node.AddMember(name, RandomSource(fuzz), input.Flip());
        case 2:
            return node.ModifyMember(name, RandomSource(fuzz));
        case 3:
            return node.RenameMember(name, RandomName(input), input.Flip());
        case 4:
            return node.Append(RandomSource(fuzz));
        default:
            return node.SetElement(input.Number(0, 5), RandomSource(fuzz));
    }
}

void EditOne(OptionsFuzz& fuzz) {
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(fuzz.input, fuzz.options), &modified);
    const bool done = Edit(fuzz, node, RandomName(fuzz.input, node.Value()));
    // Refused, an edit leaves its message and marks no change.
    REQUIRE(modified == done);
    REQUIRE(node.Error().IsEmpty() == done);
}

// What may fail without a message, or marks no change.
void Remove(OptionsFuzz& fuzz) {
    FuzzInput& input = fuzz.input;
    bool modified = false;
    OptionsNodeEdit node(&RandomPart(input, fuzz.options), &modified);
    const char* const name = RandomName(input, node.Value());
    if (input.Flip()) {
        Json::Value& document = input.Flip() ? fuzz.options : fuzz.changes;
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

void EditOptions(OptionsFuzz& fuzz) {
    if (fuzz.input.Flip()) {
        Merge(fuzz);
    } else if (fuzz.input.Flip()) {
        EditOne(fuzz);
    } else {
        Remove(fuzz);
    }
}
