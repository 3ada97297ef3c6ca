// Assignment of JSON values, as every change of an options tree does it.
#pragma once

#include "json/value.h"

namespace Quenda {

// The message of an assignment that would change the type of a value.
constexpr char kTypeChange[] = "Invalid operation: cannot change type of existing OptionsNodeEdit";

// Whether a value of one type may replace one of the other when types are checked: null goes
// with everything, numbers with each other, any other type (booleans, too) with itself alone.
constexpr bool TypesCompatible(Json::ValueType oldType, Json::ValueType newType) {
    const auto isNumber = [](Json::ValueType type) {
        return type == Json::intValue || type == Json::uintValue || type == Json::realValue;
    };
    return oldType == newType || oldType == Json::nullValue || newType == Json::nullValue ||
           (isNumber(oldType) && isNumber(newType));
}

// Makes `destination` what `source` is. The comment after it on the same line is replaced only
// when `source` has one. Neither may be a part of the other.
void AssignValue(Json::Value& destination, const Json::Value& source);
void AssignValue(Json::Value& destination, Json::Value&& source);

// The same when the types are compatible; otherwise false and no change.
bool AssignCompatible(Json::Value& destination, const Json::Value& source);

}  // namespace Quenda
