#include "core/options/OptionsAssign.h"

#include <utility>

#include "core/options/JsonValue.h"

namespace Quenda {

namespace {

bool IsNumber(Json::ValueType type) {
    return type == Json::intValue || type == Json::uintValue || type == Json::realValue;
}

}  // namespace

bool TypesCompatible(Json::ValueType oldType, Json::ValueType newType) {
    return oldType == Json::nullValue || newType == Json::nullValue || oldType == newType ||
           (IsNumber(oldType) && IsNumber(newType));
}

void AssignValue(Json::Value& destination, Json::Value source) {
    destination.swapPayload(source);  // comments stay where they are
    if (source.hasComment(Json::commentAfterOnSameLine)) {
        JsonValue::SetSameLineComment(destination, source.getComment(Json::commentAfterOnSameLine));
    }
}

bool AssignCompatible(Json::Value& destination, Json::Value source) {
    if (!TypesCompatible(destination.type(), source.type())) {
        return false;
    }
    AssignValue(destination, std::move(source));
    return true;
}

}  // namespace Quenda
