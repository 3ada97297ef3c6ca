#include "fuzz/RandomDocument.h"

#include <iterator>
#include <limits>

#include "core/options/JsonValue.h"

namespace {

using Quenda::JsonValue::kMaxNesting;

constexpr unsigned kMaxDepth = 5;      // of what is drawn value by value
constexpr unsigned kMaxPathNames = 8;  // of a way down into a document

constexpr const char* kNames[] = {"a", "b", "id", "list", "name", ""};
constexpr const char* kTexts[] = {"0x1F", "017", " 42abc", "-2147483649", "1e999", "nan", "true"};
constexpr unsigned kDepths[] = {1, kMaxNesting - 1, kMaxNesting, kMaxNesting + 1, 10000};

Json::Value RandomScalar(FuzzInput& input) {
    switch (input.ConsumeIntegralInRange(0, 6)) {
        case 0:
            return input.ConsumeIntegral<Json::Int>();
        case 1:
            return input.ConsumeIntegral<Json::UInt>();
        case 2:
            return input.ConsumeFloatingPoint<double>();
        case 3:
            return input.PickValueInArray({std::numeric_limits<double>::infinity(), -0.5,
                                           4294967295.5, std::numeric_limits<double>::quiet_NaN()});
        case 4:
            return input.ConsumeBool();
        case 5:
            return RandomText(input);
        default:
            return Json::Value();
    }
}

// Puts the value below that many arrays or objects.
void Nest(FuzzInput& input, Json::Value& value) {
    const bool arrays = input.ConsumeBool();
    for (unsigned left = input.PickValueInArray(kDepths); left > 0; --left) {
        Json::Value outer;
        (arrays ? outer[0U] : outer["a"]).swap(value);
        value.swap(outer);
    }
}

Json::Value RandomValue(FuzzInput& input, unsigned depth) {
    const unsigned kind = input.ConsumeIntegralInRange(0U, 15U);
    Json::Value value(kind < 6 ? Json::objectValue : Json::arrayValue);
    // Few enough to leave most of the input to what is done with them.
    if (kind >= (depth == 0 ? 12U : 9U) || depth == kMaxDepth) {
        value = RandomScalar(input);
    } else {
        for (unsigned left = input.ConsumeIntegralInRange(0U, 4U); left > 0; --left) {
            Json::Value child = RandomValue(input, depth + 1);
            (kind < 6 ? value[RandomText(input)] : value[value.size()]).swap(child);
        }
    }
    if (input.ConsumeIntegralInRange(0, 15) == 0) {
        value.setComment("/" + RandomText(input), Json::commentAfterOnSameLine);
    }
    return value;
}

void ChangeScalar(FuzzInput& input, Json::Value& value) {
    if (value.isString()) {
        value = RandomText(input);
    } else if (value.isBool()) {
        value = input.ConsumeBool();
    } else if (value.isNumeric()) {
        value = input.ConsumeBool() ? Json::Value(input.ConsumeIntegralInRange(0, 3)) : 0.5;
    }
}

void Change(FuzzInput& input, Json::Value& value) {
    const unsigned kind = input.ConsumeIntegralInRange(0U, 63U);
    if (kind < 4) {
        value = kind == 0 ? Json::Value() : RandomScalar(input);
    } else if (kind < 14 && value.isArray()) {
        value.resize(value.size() / 2);
    } else if (kind < 14 && value.isObject() && !value.empty()) {
        value.removeMember(value.begin().name());
    } else if (kind < 24 && !value.isBool() && !value.isString() && !value.isNumeric()) {
        (value.isArray() ? value[value.size()] : value["b"]) = RandomValue(input, kMaxDepth - 1);
    } else if (kind < 56) {
        ChangeScalar(input, value);
    }
    for (Json::Value& child : value) {
        Change(input, child);
    }
}

// The changes with some members left out and with one element in each array.
Json::Value Mirror(FuzzInput& input, const Json::Value& changes) {
    Json::Value ids(changes.type());
    if (changes.isArray()) {
        if (!changes.empty()) {
            Mirror(input, changes[0U]).swap(ids[0U]);
        }
    } else if (changes.isObject()) {
        for (auto member = changes.begin(); member != changes.end(); ++member) {
            if (input.ConsumeBool()) {
                Mirror(input, *member).swap(ids[member.name()]);
            }
        }
    }
    return ids;
}

}  // namespace

std::string RandomText(FuzzInput& input) {
    switch (input.ConsumeIntegralInRange(0, 7)) {
        case 0:
            return input.ConsumeRandomLengthString(40);
        case 1:
            return input.PickValueInArray(kTexts);
        default:
            return input.PickValueInArray(kNames);
    }
}

const char* RandomName(FuzzInput& input) {
    return input.ConsumeIntegralInRange(0, 15) == 0 ? nullptr : input.PickValueInArray(kNames);
}

const char* RandomName(FuzzInput& input, const Json::Value& value) {
    const size_t first = input.ConsumeIntegralInRange<size_t>(0, 2 * std::size(kNames) - 1);
    for (size_t i = first; i < 2 * std::size(kNames); ++i) {
        const char* const name = kNames[i % std::size(kNames)];
        if (Quenda::JsonValue::FindMember(value, name) != nullptr) {
            return name;
        }
    }
    return RandomName(input);
}

Json::Value RandomDocument(FuzzInput& input) {
    Json::Value document = RandomValue(input, 0);
    if (input.ConsumeIntegralInRange(0, 63) == 1) {
        Nest(input, document);
    }
    return document;
}

Json::Value RandomChanges(FuzzInput& input, const Json::Value& document) {
    if (Quenda::JsonValue::NestsDeeperThan(document, kMaxNesting)) {
        return RandomDocument(input);
    }
    Json::Value changes(document);
    Change(input, changes);
    return changes;
}

Json::Value RandomArrayIds(FuzzInput& input, const Json::Value& changes) {
    const bool mirror = input.ConsumeIntegralInRange(0, 3) != 0;
    return mirror && !Quenda::JsonValue::NestsDeeperThan(changes, kMaxNesting)
               ? Mirror(input, changes)
               : RandomDocument(input);
}

MergeTrees RandomMerge(FuzzInput& input) {
    MergeTrees trees;
    trees.before = RandomValue(input, 0);
    trees.source = RandomChanges(input, trees.before);
    if (input.ConsumeIntegralInRange(0, 3) != 0) {
        trees.ids = Mirror(input, trees.source);
    }
    return trees;
}

Json::Value& RandomPart(FuzzInput& input, Json::Value& document) {
    Json::Value* part = &document;
    for (unsigned left = input.ConsumeIntegralInRange(0U, kMaxPathNames); left > 0; --left) {
        if (part->empty() || !(part->isArray() || part->isObject())) {
            break;
        }
        const unsigned index = input.ConsumeIntegralInRange(0U, part->size() - 1);
        part = part->isArray() ? &(*part)[index] : &*std::next(part->begin(), int(index));
    }
    return *part;
}
