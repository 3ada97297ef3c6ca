#include <string>
#include <utility>

#include "core/options/JsonValue.h"
#include "core/options/MatchElement.h"
#include "core/options/MemberCursor.h"
#include "core/options/OptionsAssign.h"
#include "core/options/OptionsNodeEdit.h"
#include "core/text/FormatText.h"

namespace Quenda {

namespace {

constexpr char kArrayToNonArray[] = ": Cannot merge array to non-array";
constexpr char kIdsMismatch[] = ": Array IDs type does not match destination type";

// One step of the way from the root to the value that is merged into.
struct MergeContext {
    const MergeContext* parent;  // null for the root
    const char* name;            // empty for an element of an array
    Json::Value& destination;

    // Empty for the root. A member of an element follows two slashes.
    std::string Path() const {
        return parent == nullptr ? std::string() : parent->Path() + "/" + name;
    }
};

// Returns the message of the failure that ended the merge, empty when all went well. What was
// merged before it stays.
std::string MergeInto(const MergeContext& context, const Json::Value& source,
                      const Json::Value& ids);

std::string MergeObject(const MergeContext& context, const Json::Value& source,
                        const Json::Value& ids) {
    if (context.destination.isNull()) {
        AssignValue(context.destination, source);
        return {};
    }
    if (!context.destination.isObject()) {
        return context.Path() + ": Cannot merge object to non-object";
    }
    // The IDs must mirror the source. Others have no members to look up: refused.
    if (!JsonValue::IsObject(ids) && !source.empty()) {
        return context.Path() + kIdsMismatch;
    }
    MemberCursor members(context.destination);
    for (auto member = source.begin(), end = source.end(); member != end; ++member) {
        const char* nameEnd = nullptr;
        const char* name = member.memberName(&nameEnd);
        // Made even for a null source member, which so adds a null one.
        const MergeContext child{&context, name, members.Demand(name, nameEnd)};
        std::string message =
            MergeInto(child, *member, JsonValue::MemberOrNull(ids, name, nameEnd));
        if (!message.empty()) {
            return message;
        }
    }
    return {};
}

// Merges into the first matching element, or appends.
std::string MergeElement(const MergeContext& context, const Json::Value& source, uint32_t index,
                         const Json::Value& ids, ElementMatcher& matcher) {
    Json::Value& destination = context.destination;
    matcher.SetSource(source);
    const Json::ArrayIndex size = destination.size();
    auto next = destination.begin();
    const auto end = destination.end();
    for (Json::ArrayIndex i = 0; i < size; ++i) {
        // An array with gaps lacks some null elements; they come into being when looked at.
        Json::Value& element = next != end && next.index() == i ? *next++ : destination[i];
        switch (matcher.Match(element)) {
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
    if (!destination.empty() && !TypesCompatible(destination.begin()->type(), source.type())) {
        return "Invalid operation: adding incompatible element to array OptionsNode";
    }
    AssignValue(destination[destination.size()], source);
    return {};
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
        return {};
    }
    ElementMatcher matcher(ids[0U]);
    for (auto element = source.begin(), end = source.end(); element != end; ++element) {
        if (element->isNull()) {
            continue;
        }
        std::string message = MergeElement(context, *element, element.index(), ids[0U], matcher);
        if (!message.empty()) {
            return message;
        }
    }
    return {};
}

std::string MergeInto(const MergeContext& context, const Json::Value& source,
                      const Json::Value& ids) {
    switch (source.type()) {
        case Json::nullValue:
            return {};
        case Json::objectValue:
            return MergeObject(context, source, ids);
        case Json::arrayValue:
            return MergeArray(context, source, ids);
        default:
            return AssignCompatible(context.destination, source) ? std::string() : kTypeChange;
    }
}

}  // namespace

bool OptionsNodeEdit::Merge(const OptionsNode& source, const OptionsNode& arrayIds) {
    if (editValue_ == nullptr || source.IsEmpty()) {
        return Fail("Invalid operation: merge on Null OptionsNode(s)");
    }
    const MergeContext root{nullptr, "", *editValue_};
    std::string message;
    switch (LookAtSources(source.Value(), arrayIds.Value())) {
        case Sources::kTooDeep:
            return FailTooDeep();
        case Sources::kShared:
            message = MergeInto(root, Json::Value(source.Value()), Json::Value(arrayIds.Value()));
            break;
        case Sources::kApart:
            message = MergeInto(root, source.Value(), arrayIds.Value());
            break;
    }
    const bool merged = message.empty();
    SetError(std::move(message));
    (void)Changed();
    return merged;
}

}  // namespace Quenda
