// The part of OptionsNode that turns values into texts and numbers.
#include <cinttypes>
#include <cstdio>

#include "core/options/JsonValue.h"
#include "core/options/OptionsNode.h"
#include "core/text/FormatText.h"
#include "core/text/TargetNumbers.h"

namespace Quenda {

namespace {

constexpr char kInvalidString[] = "invalid input string";

}  // namespace

std::string OptionsNode::GetValueString(const Json::Value& value) {
    switch (value.type()) {
        case Json::intValue:
            return FormatText("%" PRId32, JsonValue::AsInt(value));
        case Json::uintValue:
            return FormatText("%" PRIu32, JsonValue::AsUInt(value));
        case Json::realValue:
            return FormatText("%lf", JsonValue::AsDouble(value));
        case Json::stringValue:
        case Json::booleanValue:
            return JsonValue::AsText(value);
        default:
            return {};
    }
}

std::string OptionsNode::GetMemberString(const char* name) const {
    const Json::Value* member = JsonValue::FindMember(Value(), name);
    return member == nullptr ? std::string() : GetValueString(*member);
}

std::string OptionsNode::GetElementString(uint32_t index) const {
    const Json::Value& value = Value();
    return value.isArray() ? GetValueString(value[index]) : std::string();
}

const char* OptionsNode::GetText(const Json::Value& value) const {
    if (!value.isString()) {
        (void)Fail("OptionsNode is not string type");
        return nullptr;
    }
    const char* text = value.asCString();
    if (text == nullptr) {
        (void)Fail("Cannot get the string value");
    }
    return text;
}

bool OptionsNode::GetInt(int32_t& out, const Json::Value& value) const {
    if (JsonValue::IsNumeric(value)) {
        out = JsonValue::AsInt(value);
        return true;
    }
    const char* text = GetText(value);
    return text != nullptr && (ScanInt32(text, out) || Fail(kInvalidString));
}

bool OptionsNode::GetUInt(uint32_t& out, const Json::Value& value) const {
    if (JsonValue::IsNumeric(value)) {
        out = JsonValue::AsUInt(value);
        return true;
    }
    const char* text = GetText(value);
    return text != nullptr && (ScanUInt32(text, out) || Fail(kInvalidString));
}

bool OptionsNode::GetDouble(double& out, const Json::Value& value) const {
    if (JsonValue::IsNumeric(value)) {
        out = JsonValue::AsDouble(value);
        return true;
    }
    const char* text = GetText(value);
    return text != nullptr && (std::sscanf(text, "%lf", &out) == 1 || Fail(kInvalidString));
}

bool OptionsNode::GetFloat(float& out, const Json::Value& value) const {
    if (JsonValue::IsNumeric(value)) {
        out = static_cast<float>(JsonValue::AsDouble(value));
        return true;
    }
    const char* text = GetText(value);
    return text != nullptr && (std::sscanf(text, "%f", &out) == 1 || Fail(kInvalidString));
}

const Json::Value* OptionsNode::GetPresentMember(const char* name) const {
    if (!IsObject()) {
        (void)Fail("Incorrect Node type for Object or Array operations");
        return nullptr;
    }
    const Json::Value* member = JsonValue::FindMember(Value(), name);
    if (member == nullptr || member->isNull()) {
        (void)Fail("cannot find the node element");
        return nullptr;
    }
    return member;
}

bool OptionsNode::GetMemberValue(int32_t& out, const char* name, int32_t defaultValue) const {
    out = defaultValue;
    const Json::Value* member = GetPresentMember(name);
    return member != nullptr && GetInt(out, *member);
}

bool OptionsNode::GetMemberValue(uint32_t& out, const char* name, uint32_t defaultValue) const {
    out = defaultValue;
    const Json::Value* member = GetPresentMember(name);
    return member != nullptr && GetUInt(out, *member);
}

bool OptionsNode::GetMemberValue(double& out, const char* name, double defaultValue) const {
    out = defaultValue;
    const Json::Value* member = GetPresentMember(name);
    return member != nullptr && GetDouble(out, *member);
}

bool OptionsNode::GetMemberValue(float& out, const char* name, float defaultValue) const {
    out = defaultValue;
    const Json::Value* member = GetPresentMember(name);
    return member != nullptr && GetFloat(out, *member);
}

std::string OptionsNode::GetCommentText(const char* text) {
    return FormatText("//%s", text == nullptr ? "" : text);
}

}  // namespace Quenda
