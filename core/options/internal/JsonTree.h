// Lookups in JSON values and changes of them, as the options tree needs them.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "json/value.h"

namespace Quenda {

// Reports a failed check that need not end the process. Flushed, in case the process ends right
// after it.
inline void ComplainAboutJson(const char* message) {
    (void)std::printf("Quenda workaround: %s\n", message);
    (void)std::fflush(stdout);
}

namespace JsonTree {

// The name of the member that the iterator points to. It is a part of the document and ends with a
// zero byte.
std::string_view MemberName(const Json::ValueConstIterator& member);
// The member, or null when there is none, also for a value that is no object and for a null name.
const Json::Value* FindMember(const Json::Value& value, const char* name);
// The same, but a null value when there is none.
const Json::Value& MemberOrNull(const Json::Value& value, std::string_view name);

// Whether arrays and objects nest in more levels than that. A scalar has none.
bool NestsDeeperThan(const Json::Value& value, unsigned levels);
// Whether `part` is `whole`, or a value at any level below it.
bool IsPartOf(const Json::Value& part, const Json::Value& whole);

// Whether a value of one type may replace one of the other when types are checked: null goes
// with everything, numbers with each other, any other type (also boolean) only with itself.
bool TypesCompatible(Json::ValueType oldType, Json::ValueType newType);

// The member or the element. A missing one is made, with a null value. A null value becomes an
// object or an array for it, and keeps its comment.
Json::Value& DemandMember(Json::Value& object, std::string_view name);
Json::Value& DemandElement(Json::Value& array, Json::ArrayIndex index);

// Makes `destination` equal to `source`. The comment after it on the same line is replaced only
// when `source` has one.
void AssignValue(Json::Value& destination, Json::Value source);

// Places a comment, which is not empty, after the value on the same line. One that does not begin
// with "/" is complained about and kept.
void SetSameLineComment(Json::Value& value, const std::string& text);

}  // namespace JsonTree

}  // namespace Quenda
