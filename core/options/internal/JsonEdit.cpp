#include "core/options/internal/JsonEdit.h"

#include <algorithm>

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
    return &part == &whole ||
           std::any_of(whole.begin(), whole.end(),
                       [&part](const Json::Value& child) { return IsPartOf(part, child); });
}

}  // namespace Quenda
