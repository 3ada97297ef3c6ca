#include "core/options/internal/JsonEdit.h"

#include <vector>

#include "core/options/JsonValue.h"

namespace Quenda {

namespace {

bool IsNumber(Json::ValueType type) {
    return type == Json::intValue || type == Json::uintValue || type == Json::realValue;
}

// The library would do it by itself, but drop the comment.
void MakeContainer(Json::Value& value, Json::ValueType type) {
    if (value.isNull()) {
        Json::Value container(type);
        value.swapPayload(container);
    }
}

}  // namespace

bool TypesCompatible(Json::ValueType oldType, Json::ValueType newType) {
    return oldType == newType || oldType == Json::nullValue || newType == Json::nullValue ||
           (IsNumber(oldType) && IsNumber(newType));
}

Json::Value& DemandMember(Json::Value& object, std::string_view name) {
    MakeContainer(object, Json::objectValue);
    return *object.demand(name.data(), name.data() + name.size());
}

Json::Value& DemandElement(Json::Value& array, Json::ArrayIndex index) {
    MakeContainer(array, Json::arrayValue);
    return array[index];
}

void AssignValue(Json::Value& destination, Json::Value source) {
    destination.swapPayload(source);  // comments stay where they are
    if (source.hasComment(Json::commentAfterOnSameLine)) {
        // One line end is dropped from whatever is set: it must not be one of the comment's own.
        JsonValue::SetSameLineComment(destination,
                                      source.getComment(Json::commentAfterOnSameLine) + '\n');
    }
}

bool IsPartOf(const Json::Value& part, const Json::Value& whole) {
    // Without recursion: a document may nest deeper than what is ever put into it at once.
    std::vector<const Json::Value*> pending{&whole};
    while (!pending.empty()) {
        const Json::Value* const value = pending.back();
        pending.pop_back();
        if (value == &part) {
            return true;
        }
        for (const Json::Value& child : *value) {
            pending.push_back(&child);
        }
    }
    return false;
}

}  // namespace Quenda
