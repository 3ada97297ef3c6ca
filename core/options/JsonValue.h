// What the options tree wants of JSON values where jsoncpp's own value type behaves otherwise.
// Users of options go through these functions for tests and conversions.
//
// Nothing throws. A number out of range is complained about on standard output ("Quenda
// workaround: ...") and converted all the same; a value of an unsuitable type is complained about
// and ends the process, so test the type first.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "json/value.h"

namespace Quenda::JsonValue {

static_assert(sizeof(Json::LargestInt) == 4, "numbers have 32 bits, as on the terminal");

// How deep arrays and objects may nest in a value that is copied, merged or written out; one level
// less in a value that becomes a member or an element. Each level costs stack, and no real document
// needs so many.
constexpr unsigned kMaxNesting = 1000;

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
// Of a string, a boolean ("true" or "false") or null (""); any other type ends the process.
std::string AsText(const Json::Value& value);

// The name of the member that an iterator stands at. A part of the document; ends with a zero byte.
std::string_view MemberName(const Json::ValueConstIterator& member);
// The member, or null when there is none, also for a value that is no object and for a null name.
const Json::Value* FindMember(const Json::Value& value, const char* name);
// The same, but a null value when there is none.
const Json::Value& MemberOrNull(const Json::Value& value, std::string_view name);

// Places a comment after the value on the same line. One that does not begin with "/" is
// complained about and kept. `text` is not empty.
void SetSameLineComment(Json::Value& value, const std::string& text);

// Whether arrays and objects nest in more levels than that (a scalar has none).
bool NestsDeeperThan(const Json::Value& value, unsigned levels);

}  // namespace Quenda::JsonValue
