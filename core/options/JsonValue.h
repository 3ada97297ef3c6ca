// Type tests and conversions of JSON values. Use these with options: jsoncpp's own treat null,
// booleans and numbers out of range differently.
//
// Nothing throws. A number out of range is complained about on standard output ("Quenda
// workaround: ...") and converted all the same. A value of an unsuitable type is complained about
// and ends the process, so test the type first.
#pragma once

#include <cstdint>
#include <string>

#include "json/value.h"

namespace Quenda::JsonValue {

static_assert(sizeof(Json::LargestInt) == 4, "numbers have 32 bits, as on the terminal");

// Null counts as an object and as an array, booleans count as integral and numeric.
bool IsObject(const Json::Value& value);
bool IsArray(const Json::Value& value);
bool IsIntegral(const Json::Value& value);
bool IsNumeric(const Json::Value& value);

// Null gives 0. An unsigned number from 2147483647 on (itself included) is complained about and
// gives its bits as a signed number.
int32_t AsInt(const Json::Value& value);
uint32_t AsUInt(const Json::Value& value);
double AsDouble(const Json::Value& value);
// Takes a string, a boolean ("true" or "false") or null (""). Any other type ends the process.
std::string AsText(const Json::Value& value);

}  // namespace Quenda::JsonValue
