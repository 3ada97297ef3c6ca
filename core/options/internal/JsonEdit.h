// How every change of an options tree touches the JSON values beneath it.
#pragma once

#include <string_view>

#include "json/value.h"

namespace Quenda {

// Whether a value of one type may replace one of the other when types are checked: null goes
// with everything, numbers with each other, any other type (booleans, too) with itself alone.
bool TypesCompatible(Json::ValueType oldType, Json::ValueType newType);

// The member or the element; made, with a null value, when it is not there. A null value becomes an
// object or an array for it, and keeps its comment.
Json::Value& DemandMember(Json::Value& object, std::string_view name);
Json::Value& DemandElement(Json::Value& array, Json::ArrayIndex index);

// Makes `destination` what `source` is. The comment after it on the same line is replaced only
// when `source` has one.
void AssignValue(Json::Value& destination, Json::Value source);

bool IsPartOf(const Json::Value& part, const Json::Value& whole);

}  // namespace Quenda
