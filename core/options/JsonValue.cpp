#include "core/options/JsonValue.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/options/internal/JsonComplaint.h"
#include "core/text/TargetNumbers.h"

namespace Quenda::JsonValue {

namespace {

[[noreturn]] void EndProcess(const char* complaint) {
    ComplainAboutJson(complaint);
    std::abort();
}

}  // namespace

bool IsObject(const Json::Value& value) {
    return value.isNull() || value.isObject();
}

bool IsArray(const Json::Value& value) {
    return value.isNull() || value.isArray();
}

bool IsIntegral(const Json::Value& value) {
    return value.type() == Json::intValue || value.type() == Json::uintValue || value.isBool();
}

bool IsNumeric(const Json::Value& value) {
    return IsIntegral(value) || value.type() == Json::realValue;
}

int32_t AsInt(const Json::Value& value) {
    switch (value.type()) {
        case Json::nullValue:
            return 0;
        case Json::booleanValue:
            return value.asBool() ? 1 : 0;
        case Json::intValue:
            return value.asInt();
        case Json::uintValue:
            // The largest signed number itself is complained about, too, on purpose.
            if (value.asUInt() >= uint32_t{INT32_MAX}) {
                ComplainAboutJson("integer out of signed integer range");
            }
            return static_cast<int32_t>(value.asUInt());
        case Json::realValue: {
            const double real = value.asDouble();
            if (!(real >= INT32_MIN && real <= INT32_MAX)) {
                ComplainAboutJson("Real out of signed integer range");
            }
            return DoubleToInt32(real);
        }
        default:
            EndProcess("Type is not convertible to int");
    }
}

uint32_t AsUInt(const Json::Value& value) {
    switch (value.type()) {
        case Json::nullValue:
            return 0;
        case Json::booleanValue:
            return value.asBool() ? 1 : 0;
        case Json::intValue:
            if (value.asInt() < 0) {
                ComplainAboutJson("Negative integer can not be converted to unsigned integer");
            }
            return static_cast<uint32_t>(value.asInt());
        case Json::uintValue:
            return value.asUInt();
        case Json::realValue: {
            const double real = value.asDouble();
            if (!(real >= 0 && real <= UINT32_MAX)) {
                ComplainAboutJson("Real out of unsigned integer range");
            }
            return DoubleToUInt32(real);
        }
        default:
            EndProcess("Type is not convertible to uint");
    }
}

double AsDouble(const Json::Value& value) {
    if (!value.isNull() && !IsNumeric(value)) {
        EndProcess("Type is not convertible to double");
    }
    return value.asDouble();
}

std::string AsText(const Json::Value& value) {
    if (!value.isNull() && !value.isString() && !value.isBool()) {
        EndProcess("Type is not convertible to string");
    }
    return value.asString();
}

std::string_view MemberName(const Json::ValueConstIterator& member) {
    const char* end = nullptr;
    const char* const name = member.memberName(&end);
    return {name, static_cast<size_t>(end - name)};
}

const Json::Value* FindMember(const Json::Value& value, const char* name) {
    if (!value.isObject() || name == nullptr) {
        return nullptr;
    }
    return value.find(name, name + strlen(name));
}

const Json::Value& MemberOrNull(const Json::Value& value, std::string_view name) {
    const Json::Value* member =
        value.isObject() ? value.find(name.data(), name.data() + name.size()) : nullptr;
    return member == nullptr ? Json::Value::nullSingleton() : *member;
}

void SetSameLineComment(Json::Value& value, const std::string& text) {
    value.setComment(text, Json::commentAfterOnSameLine);
}

bool NestsDeeperThan(const Json::Value& value, unsigned levels) {
    if (!value.isArray() && !value.isObject()) {
        return false;
    }
    return levels == 0 ||
           std::any_of(value.begin(), value.end(), [levels](const Json::Value& child) {
               return NestsDeeperThan(child, levels - 1);
           });
}

}  // namespace Quenda::JsonValue
