// Assignment of JSON values, as every change of an options tree does it.
#pragma once

#include "json/value.h"

namespace Quenda {

// The message of an assignment that would change the type of a value.
constexpr char kTypeChange[] = "Invalid operation: cannot change type of existing OptionsNodeEdit";

// Whether a value of one type may replace one of the other when types are checked: null goes
// with everything, numbers with each other, any other type (booleans, too) with itself alone.
bool TypesCompatible(Json::ValueType oldType, Json::ValueType newType);

// Makes `destination` what `source` is. The comment after it on the same line is replaced only
// when `source` has one. By value: what `destination` held may contain the original.
void AssignValue(Json::Value& destination, Json::Value source);

// The same when the types are compatible; otherwise false and no change.
bool AssignCompatible(Json::Value& destination, Json::Value source);

}  // namespace Quenda
