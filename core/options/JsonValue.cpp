#include "core/options/JsonValue.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "core/options/JsonComplaint.h"
#include "core/text/TargetNumbers.h"

namespace Quenda::JsonValue {

namespace {

[[noreturn]] void EndProcess(const char* complaint) {
    ComplainAboutJson(complaint);
    std::abort();
}

bool IsContainer(const Json::Value& value) {
    return value.type() >= Json::arrayValue;  // arrays and objects are the last of the types
}

bool IsOneOf(const Json::Value& value, const Parts& parts) {
    return &value == parts[0] || &value == parts[1];
}

Finding LookInside(const Json::Value& container, unsigned levels, const Parts& parts) {
    if (levels == 0) {
        return Finding::kTooDeep;
    }
    Finding finding = Finding::kNothing;
    for (const Json::Value& child : container) {
        if (IsOneOf(child, parts)) {
            finding = Finding::kPart;
        }
        if (IsContainer(child)) {
            finding = std::max(finding, LookInside(child, levels - 1, parts));
        }
        if (finding == Finding::kTooDeep) {
            break;
        }
    }
    return finding;
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

bool IsEmpty(const Json::Value& value) {
    return value.empty();
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
            if (value.asUInt() >= uint32_t{std::numeric_limits<int32_t>::max()}) {
                ComplainAboutJson("integer out of signed integer range");
            }
            return static_cast<int32_t>(value.asUInt());
        case Json::realValue: {
            const double real = value.asDouble();
            if (!(real >= std::numeric_limits<int32_t>::min() &&
                  real <= std::numeric_limits<int32_t>::max())) {
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
            if (!(real >= 0 && real <= std::numeric_limits<uint32_t>::max())) {
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

const Json::Value* FindMember(const Json::Value& value, const char* name) {
    if (!value.isObject() || name == nullptr) {
        return nullptr;
    }
    return value.find(name, name + std::strlen(name));
}

Json::Value* FindMember(Json::Value& value, const char* name) {
    return const_cast<Json::Value*>(FindMember(static_cast<const Json::Value&>(value), name));
}

const Json::Value& MemberOrNull(const Json::Value& value, const char* name, const char* nameEnd) {
    const Json::Value* member = value.isObject() ? value.find(name, nameEnd) : nullptr;
    return member == nullptr ? Json::Value::nullSingleton() : *member;
}

void SetSameLineComment(Json::Value& value, const std::string& text) {
    value.setComment(text, Json::commentAfterOnSameLine);
}

Finding LookThrough(const Json::Value& value, unsigned levels, const Parts& parts) {
    const Finding inside =
        IsContainer(value) ? LookInside(value, levels, parts) : Finding::kNothing;
    return IsOneOf(value, parts) ? std::max(inside, Finding::kPart) : inside;
}

bool NestsDeeperThan(const Json::Value& value, unsigned levels) {
    return LookThrough(value, levels, {}) == Finding::kTooDeep;
}

}  // namespace Quenda::JsonValue
