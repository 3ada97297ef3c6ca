#include "core/options/JsonValue.h"

#include <cstdlib>

#include "core/numbers/TargetNumbers.h"
#include "core/options/internal/JsonTree.h"

namespace Quenda::JsonValue {

namespace {

void WarnUnless(bool inRange, const char* complaint) {
    if (!inRange) {
        ComplainAboutJson(complaint);
    }
}

void Demand(bool convertible, const char* complaint) {
    WarnUnless(convertible, complaint);
    if (!convertible) {
        std::abort();
    }
}

// Of null (0), a boolean or a whole number.
uint32_t Bits(const Json::Value& value) {
    return value.type() == Json::uintValue ? value.asUInt() : static_cast<uint32_t>(value.asInt());
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
    Demand(value.isNull() || IsNumeric(value), "Type is not convertible to int");
    if (value.type() == Json::realValue) {
        const double real = value.asDouble();
        WarnUnless(real >= INT32_MIN && real <= INT32_MAX, "Real out of signed integer range");
        return DoubleToInt32(real);
    }
    // The largest signed number itself is complained about, too, on purpose.
    WarnUnless(value.type() != Json::uintValue || value.asUInt() < uint32_t{INT32_MAX},
               "integer out of signed integer range");
    return static_cast<int32_t>(Bits(value));
}

uint32_t AsUInt(const Json::Value& value) {
    Demand(value.isNull() || IsNumeric(value), "Type is not convertible to uint");
    if (value.type() == Json::realValue) {
        const double real = value.asDouble();
        WarnUnless(real >= 0 && real <= UINT32_MAX, "Real out of unsigned integer range");
        return DoubleToUInt32(real);
    }
    WarnUnless(value.type() != Json::intValue || value.asInt() >= 0,
               "Negative integer can not be converted to unsigned integer");
    return Bits(value);
}

double AsDouble(const Json::Value& value) {
    Demand(value.isNull() || IsNumeric(value), "Type is not convertible to double");
    return value.asDouble();
}

std::string AsText(const Json::Value& value) {
    Demand(value.isNull() || value.isString() || value.isBool(),
           "Type is not convertible to string");
    return value.asString();
}

}  // namespace Quenda::JsonValue
