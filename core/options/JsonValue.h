// What the options tree wants of JSON values where jsoncpp's own value type behaves otherwise.
// Users of options go through these functions for tests and conversions.
//
// Nothing throws. A number out of range is complained about on standard output ("Quenda
// workaround: ...") and converted all the same; a value of an unsuitable type is complained about
// and ends the process, so test the type first.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "json/value.h"

namespace Quenda::JsonValue {

// How deep arrays and objects may nest in a value that is copied, merged or written out. Each
// level costs stack; no real document comes near.
constexpr unsigned kMaxNesting = 1000;

// Null counts as an object and as an array, booleans count as integral and numeric.
bool IsObject(const Json::Value& value);
bool IsArray(const Json::Value& value);
bool IsIntegral(const Json::Value& value);
bool IsNumeric(const Json::Value& value);
// Null, or an array or object without elements.
bool IsEmpty(const Json::Value& value);

// Null gives 0. An unsigned number from 2147483647 on (itself included) is complained about and
// gives its bits as a signed number.
int32_t AsInt(const Json::Value& value);
uint32_t AsUInt(const Json::Value& value);
double AsDouble(const Json::Value& value);
// Of a string, a boolean ("true" or "false") or null (""); any other type ends the process.
std::string AsText(const Json::Value& value);

// The member, or null when there is none, also for a value that is no object and for a null name.
const Json::Value* FindMember(const Json::Value& value, const char* name);
Json::Value* FindMember(Json::Value& value, const char* name);
// The member of the name between the pointers, or a null value, also for a value that is no object.
const Json::Value& MemberOrNull(const Json::Value& value, const char* name, const char* nameEnd);

// Places a comment after the value on the same line. One that does not begin with "/" is
// complained about and kept. `text` is not empty.
void SetSameLineComment(Json::Value& value, const std::string& text);

// What a look through a whole value finds. kTooDeep: arrays and objects nest in more than the
// levels given (a scalar has none). Otherwise kPart: one of the parts is the value or inside it.
enum class Finding { kNothing, kPart, kTooDeep };
using Parts = std::array<const Json::Value*, 2>;
Finding LookThrough(const Json::Value& value, unsigned levels, const Parts& parts);
bool NestsDeeperThan(const Json::Value& value, unsigned levels);

}  // namespace Quenda::JsonValue
