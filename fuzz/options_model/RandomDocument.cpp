#include "fuzz/options_model/RandomDocument.h"

#include <cmath>
#include <iterator>

#include "core/options/OptionsNode.h"
#include "core/options/internal/JsonTree.h"

namespace OptionsModel {

namespace {

using namespace Quenda::JsonTree;

constexpr unsigned kMaxNesting = Quenda::OptionsNode::kMaxNesting;
constexpr unsigned kMaxDepth = 5;  // of documents that are made value by value

constexpr const char* kNames[] = {"a", "b", "id", "list", "name", ""};
constexpr const char* kTexts[] = {"0x1F", "017", " 42abc", "-2147483649", "1e999", "nan", "\n\n"};
constexpr double kReals[] = {-0.5, 4294967295.5, HUGE_VAL, NAN};
constexpr unsigned kDepths[] = {1, kMaxNesting - 1, kMaxNesting, kMaxNesting + 1, 10000};

Json::Value RandomScalar(RandomInput& input) {
    switch (input.Number(0, 5)) {
        case 0:
            return input.Bits<Json::Int>();
        case 1:
            return input.Bits<Json::UInt>();
        case 2:
            return input.Flip() ? input.Bits<double>() : input.Pick(kReals);
        case 3:
            return input.Flip();
        case 4:
            return RandomText(input);
        default:
            return Json::Value();
    }
}

// Puts the value below a random number of arrays or objects.
void Nest(RandomInput& input, Json::Value& value) {
    const bool arrays = input.Flip();
    for (unsigned left = input.Pick(kDepths); left > 0; --left) {
        Json::Value outer;
        (arrays ? outer[0U] : outer["a"]).swap(value);
        value.swap(outer);
    }
}

Json::Value RandomValue(RandomInput& input, unsigned depth) {
    const unsigned kind = input.Number(0, 15);
    const bool isObject = kind < 6;
    Json::Value value(isObject ? Json::objectValue : Json::arrayValue);
    // Few containers, so that most of the input remains for queries and edits.
    if (kind >= (depth == 0 ? 12 : 9) || depth == kMaxDepth) {
        value = RandomScalar(input);
    } else {
        for (unsigned left = input.Number(0, 4); left > 0; --left) {
            Json::Value child = RandomValue(input, depth + 1);
            (isObject ? value[RandomText(input)] : value[value.size()]).swap(child);
        }
    }
    if (input.OneIn(16)) {
        value.setComment("/" + RandomText(input), Json::commentAfterOnSameLine);
    }
    return value;
}

void Change(RandomInput& input, Json::Value& value) {
    const unsigned kind = input.Number(0, 15);
    if (kind == 0) {
        value = RandomScalar(input);
    } else if (kind == 1 && value.isObject() && !value.empty()) {
        value.removeMember(value.begin().name());
    } else if (kind == 2 && (value.isObject() || value.isArray())) {
        Json::Value child = RandomValue(input, kMaxDepth - 1);
        (value.isArray() ? value[value.size()] : value["b"]).swap(child);
    } else if (value.isString()) {
        value = RandomText(input);
    } else if (value.isNumeric()) {
        value = input.Number(0, 3);
    }
    for (Json::Value& child : value) {
        Change(input, child);
    }
}

// A copy of the structure, without some members and with one element in each array.
Json::Value Mirror(RandomInput& input, const Json::Value& changes) {
    Json::Value ids(changes.type());
    if (changes.isArray() && !changes.empty()) {
        Mirror(input, changes[0U]).swap(ids[0U]);
    } else if (changes.isObject()) {
        for (auto member = changes.begin(); member != changes.end(); ++member) {
            if (input.Flip()) {
                Mirror(input, *member).swap(ids[member.name()]);
            }
        }
    }
    return ids;
}

}  // namespace

std::string RandomText(RandomInput& input) {
    if (input.OneIn(8)) {
        return input.Text(40);
    }
    return input.OneIn(8) ? input.Pick(kTexts) : input.Pick(kNames);
}

const char* RandomName(RandomInput& input) {
    return input.OneIn(16) ? nullptr : input.Pick(kNames);
}

const char* RandomName(RandomInput& input, const Json::Value& value) {
    const char* name = RandomName(input);
    for (int tries = 0; tries < 4 && FindMember(value, name) == nullptr; ++tries) {
        name = RandomName(input);
    }
    return name;
}

Json::Value RandomDocument(RandomInput& input) {
    Json::Value document = RandomValue(input, 0);
    if (input.OneIn(64)) {
        Nest(input, document);
    }
    return document;
}

Json::Value RandomChanges(RandomInput& input, const Json::Value& document) {
    if (NestsDeeperThan(document, kMaxNesting)) {
        return RandomDocument(input);
    }
    Json::Value changes(document);
    Change(input, changes);
    return changes;
}

Json::Value RandomArrayIds(RandomInput& input, const Json::Value& changes) {
    return input.OneIn(4) || NestsDeeperThan(changes, kMaxNesting) ? RandomDocument(input)
                                                                   : Mirror(input, changes);
}

Json::Value& RandomPart(RandomInput& input, Json::Value& document) {
    Json::Value* part = &document;
    for (unsigned left = input.Flip() ? input.Number(0, 8) : 0; left > 0 && part->size() > 0;
         --left) {
        const unsigned index = input.Number(0, part->size() - 1);
        part = part->isArray() ? &(*part)[index] : &*std::next(part->begin(), int(index));
    }
    return *part;
}

}  // namespace OptionsModel
