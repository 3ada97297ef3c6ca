#include "core/options/internal/JsonMerge.h"

#include <string_view>

#include "core/options/JsonValue.h"
#include "core/options/internal/JsonTree.h"
#include "core/text/FormatText.h"

namespace Quenda::JsonTree {

namespace {

constexpr char kArrayToNonArray[] = ": Cannot merge array to non-array";
constexpr char kIdsMismatch[] = ": Array IDs type does not match destination type";

// The result of comparing an element of the source's array with one of the destination's.
enum class ElementMatch {
    kDifferent,
    kSame,
    kMissingInSource,
    kMissingInDestination,
    kNotComparable,
};

// Compares the elements by the members that `ids` names, at every level. The leaves of `ids` only
// give the type. Values that are no objects are the same when they are equal, but a signed 1 does
// not equal an unsigned 1.
ElementMatch MatchElement(const Json::Value& destination, const Json::Value& source,
                          const Json::Value& ids) {
    if (!TypesCompatible(destination.type(), source.type()) ||
        !TypesCompatible(destination.type(), ids.type())) {
        return ElementMatch::kNotComparable;
    }
    if (!JsonValue::IsObject(destination)) {
        return source == destination ? ElementMatch::kSame : ElementMatch::kDifferent;
    }
    if (!ids.isObject()) {
        return ElementMatch::kSame;  // no member identifies elements
    }
    for (auto id = ids.begin(); id != ids.end(); ++id) {
        if (id->isNull()) {
            continue;
        }
        const std::string_view name = MemberName(id);
        const Json::Value& sourceMember = MemberOrNull(source, name);
        if (sourceMember.isNull()) {
            return ElementMatch::kMissingInSource;
        }
        const Json::Value& destinationMember = MemberOrNull(destination, name);
        if (destinationMember.isNull()) {
            return ElementMatch::kMissingInDestination;
        }
        const ElementMatch match = MatchElement(destinationMember, sourceMember, *id);
        if (match != ElementMatch::kSame) {
            return match;
        }
    }
    return ElementMatch::kSame;
}

// One step on the way from the root to the value that is merged into.
struct MergeContext {
    const MergeContext* parent;  // null for the root
    const char* name;            // empty for an element of an array
    Json::Value& destination;

    // Empty for the root. Two slashes precede a member of an array's element.
    std::string Path() const { return parent == nullptr ? "" : parent->Path() + "/" + name; }
};

// As `MergeValue`.
std::string MergeInto(const MergeContext& context, const Json::Value& source,
                      const Json::Value& ids);

std::string MergeObject(const MergeContext& context, const Json::Value& source,
                        const Json::Value& ids) {
    if (context.destination.isNull()) {
        AssignValue(context.destination, source);
        return "";
    }
    if (!context.destination.isObject()) {
        return context.Path() + ": Cannot merge object to non-object";
    }
    // The IDs must mirror the source: in a value of another type no member can be looked up.
    if (!JsonValue::IsObject(ids) && !source.empty()) {
        return context.Path() + kIdsMismatch;
    }
    for (auto member = source.begin(); member != source.end(); ++member) {
        const std::string_view name = MemberName(member);
        // Made even for a null source member: that adds a null one, on purpose.
        const MergeContext child{&context, name.data(), DemandMember(context.destination, name)};
        std::string message = MergeInto(child, *member, MemberOrNull(ids, name));
        if (!message.empty()) {
            return message;
        }
    }
    return "";
}

// Merges into the first matching element, or appends.
std::string MergeElement(const MergeContext& context, const Json::Value& source, uint32_t index,
                         const Json::Value& ids) {
    Json::Value& destination = context.destination;
    for (Json::ArrayIndex i = 0; i < destination.size(); ++i) {
        // An array with gaps lacks some null elements: reading one through this reference adds it.
        Json::Value& element = destination[i];
        switch (MatchElement(element, source, ids)) {
            case ElementMatch::kDifferent:
                break;
            case ElementMatch::kSame:
                return MergeInto({&context, "", element}, source, ids);
            case ElementMatch::kMissingInSource:
                return context.Path() +
                       FormatText("[%u]: Missing array ID in source options", index);
            case ElementMatch::kMissingInDestination:
                return context.Path() +
                       FormatText("[%u]: Missing array ID in destination options", index);
            case ElementMatch::kNotComparable:
                return context.Path() + FormatText("[%u]: Array elements not comparable", index);
        }
    }
    if (!destination.empty() && !TypesCompatible(destination[0U].type(), source.type())) {
        return "Invalid operation: adding incompatible element to array OptionsNode";
    }
    AssignValue(destination[destination.size()], source);
    return "";
}

std::string MergeArray(const MergeContext& context, const Json::Value& source,
                       const Json::Value& ids) {
    const bool isNew = context.destination.isNull();
    if (!isNew && !context.destination.isArray()) {
        return context.Path() + kArrayToNonArray;
    }
    if (!ids.isNull() && !ids.isArray()) {
        return context.Path() + (isNew ? kArrayToNonArray : kIdsMismatch);
    }
    if (!ids.isNull() && ids.size() != 1) {
        return context.Path() + ": Multiple elements in array IDs";
    }
    if (isNew || ids.isNull()) {
        AssignValue(context.destination, source);
        return "";
    }
    for (Json::ArrayIndex i = 0; i < source.size(); ++i) {
        if (source[i].isNull()) {
            continue;
        }
        std::string message = MergeElement(context, source[i], i, ids[0U]);
        if (!message.empty()) {
            return message;
        }
    }
    return "";
}

std::string MergeInto(const MergeContext& context, const Json::Value& source,
                      const Json::Value& ids) {
    switch (source.type()) {
        case Json::nullValue:
            return "";
        case Json::objectValue:
            return MergeObject(context, source, ids);
        case Json::arrayValue:
            return MergeArray(context, source, ids);
        default:
            if (!TypesCompatible(context.destination.type(), source.type())) {
                return "Invalid operation: cannot change type of existing OptionsNodeEdit";
            }
            AssignValue(context.destination, source);
            return "";
    }
}

}  // namespace

void OverlayValue(Json::Value& destination, const Json::Value& source, uint32_t maxDepth) {
    if (source.isNull()) {
        return;
    }
    if (!source.isObject() || !JsonValue::IsObject(destination)) {
        AssignValue(destination, source);
        return;
    }
    for (auto member = source.begin(); member != source.end(); ++member) {
        if (member->isNull()) {
            continue;
        }
        Json::Value& target = DemandMember(destination, MemberName(member));
        if (maxDepth > 0) {
            OverlayValue(target, *member, maxDepth - 1);
        } else {
            AssignValue(target, *member);
        }
    }
}

std::string MergeValue(Json::Value& destination, const Json::Value& source,
                       const Json::Value& arrayIds) {
    return MergeInto({nullptr, "", destination}, source, arrayIds);
}

}  // namespace Quenda::JsonTree
