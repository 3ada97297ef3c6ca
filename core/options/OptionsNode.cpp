#include "core/options/OptionsNode.h"

#include <cinttypes>
#include <cstdio>
#include <string_view>
#include <utility>

#include "core/numbers/TargetNumbers.h"
#include "core/options/JsonValue.h"
#include "core/options/internal/JsonTree.h"
#include "core/output/Writable.h"
#include "core/text/FormatText.h"
#include "json/writer.h"

namespace Quenda {

namespace {

constexpr char kNotAnObject[] = "Invalid node type: OptionsNode must be object type";

// Reads a number, as `convert` gives it, or the number that a string begins with. Returns the
// message of a failure, or null.
template <typename T, typename Convert, typename Scan>
const char* ReadNumber(T& out, const Json::Value& value, Convert convert, Scan scan) {
    if (JsonValue::IsNumeric(value)) {
        out = static_cast<T>(convert(value));
        return nullptr;
    }
    if (!value.isString()) {
        return "OptionsNode is not string type";
    }
    const char* text = value.asCString();
    if (text == nullptr) {
        return "Cannot get the string value";
    }
    return scan(text, out) ? nullptr : "invalid input string";
}

}  // namespace

OptionsNode::OptionsNode(const Json::Value* value, OptionsContext context)
    : value_(value == nullptr ? &own_ : value), context_(context) {}

OptionsNode::OptionsNode(const Json::Value& value, OptionsContext context)
    : value_(&own_), context_(context) {
    SetOwnValue(value);
}

OptionsNode::OptionsNode(const OptionsNode& other) {
    *this = other;
}

// This node's own value is not cleared: the other node may view a part of it.
OptionsNode& OptionsNode::operator=(const OptionsNode& other) {
    if (this != &other) {
        value_ = other.value_;
        context_ = other.context_;
        error_ = other.error_;
        if (other.value_ == &other.own_) {
            value_ = &own_;
            SetOwnValue(other.own_);
        }
    }
    return *this;
}

void OptionsNode::SetOwnValue(const Json::Value& value) {
    own_ = CheckNesting(value, kMaxNesting) ? value : Json::Value();
}

bool OptionsNode::IsObject() const {
    return !IsEmpty() && JsonValue::IsObject(*value_);
}

OptionsNode OptionsNode::Derive(const Json::Value* value) const {
    const bool isNull = value == nullptr || value->isNull();
    return OptionsNode(isNull ? nullptr : value, context_);
}

OptionsNode OptionsNode::GetMember(const char* name) const {
    if (!IsObject()) {
        (void)Fail(kNotAnObject);
        return Derive(nullptr);
    }
    return Derive(JsonTree::FindMember(*value_, name));
}

OptionsNode OptionsNode::GetElement(uint32_t index) const {
    if (IsEmpty() || !JsonValue::IsArray(*value_)) {
        (void)Fail("Invalid node type: OptionsNode must be array type");
        return Derive(nullptr);
    }
    return Derive(&(*value_)[index]);
}

OptionsNode OptionsNode::GetNode(const OptionsPath& path) const {
    if (IsEmpty() || value_->empty()) {
        (void)Fail("OptionsNode is empty");
        return Derive(nullptr);
    }
    const Json::Value* current = value_;
    for (const char* name : path) {
        if (!current->isObject()) {
            (void)Fail("non-object OptionsNode down the path");
            return Derive(nullptr);
        }
        current = JsonTree::FindMember(*current, name);
        if (current == nullptr || current->isNull()) {
            (void)Fail("empty OptionsNode down the path");
            return Derive(nullptr);
        }
    }
    return OptionsNode(current, context_);
}

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
    const Json::Value* member = JsonTree::FindMember(Value(), name);
    return member == nullptr ? std::string() : GetValueString(*member);
}

std::string OptionsNode::GetElementString(uint32_t index) const {
    const Json::Value& value = Value();
    return value.isArray() ? GetValueString(value[index]) : std::string();
}

bool OptionsNode::GetInt(int32_t& out, const Json::Value& value) const {
    return Succeed(ReadNumber(out, value, JsonValue::AsInt, [](const char* text, int32_t& number) {
        return ScanInt32(text, number);
    }));
}

bool OptionsNode::GetUInt(uint32_t& out, const Json::Value& value) const {
    return Succeed(
        ReadNumber(out, value, JsonValue::AsUInt,
                   [](const char* text, uint32_t& number) { return ScanUInt32(text, number); }));
}

bool OptionsNode::GetDouble(double& out, const Json::Value& value) const {
    return Succeed(ReadNumber(
        out, value, JsonValue::AsDouble,
        [](const char* text, double& number) { return std::sscanf(text, "%lf", &number) == 1; }));
}

bool OptionsNode::GetFloat(float& out, const Json::Value& value) const {
    return Succeed(ReadNumber(out, value, JsonValue::AsDouble, [](const char* text, float& number) {
        return std::sscanf(text, "%f", &number) == 1;
    }));
}

template <typename T>
bool OptionsNode::GetMemberValue(T& out, const char* name, T defaultValue, Getter<T> get) const {
    out = defaultValue;
    if (!IsObject()) {
        return Fail("Incorrect Node type for Object or Array operations");
    }
    const Json::Value* member = JsonTree::FindMember(Value(), name);
    if (member == nullptr || member->isNull()) {
        return Fail("cannot find the node element");
    }
    return (this->*get)(out, *member);
}

bool OptionsNode::GetMemberValue(int32_t& out, const char* name, int32_t defaultValue) const {
    return GetMemberValue(out, name, defaultValue, &OptionsNode::GetInt);
}

bool OptionsNode::GetMemberValue(uint32_t& out, const char* name, uint32_t defaultValue) const {
    return GetMemberValue(out, name, defaultValue, &OptionsNode::GetUInt);
}

bool OptionsNode::GetMemberValue(double& out, const char* name, double defaultValue) const {
    return GetMemberValue(out, name, defaultValue, &OptionsNode::GetDouble);
}

bool OptionsNode::GetMemberValue(float& out, const char* name, float defaultValue) const {
    return GetMemberValue(out, name, defaultValue, &OptionsNode::GetFloat);
}

bool OptionsNode::ForEachMember(const MemberVisitor& visitor) const {
    if (!IsObject() || !visitor) {
        return false;
    }
    bool stop = false;
    for (auto member = value_->begin(); !stop && member != value_->end(); ++member) {
        visitor->Invoke(stop, JsonTree::MemberName(member).data(), OptionsNode(&*member, context_));
    }
    return true;
}

bool OptionsNode::ForEachElement(const ElementVisitor& visitor) const {
    if (IsEmpty() || !JsonValue::IsArray(*value_) || !visitor) {
        return false;
    }
    bool stop = false;
    for (uint32_t index = 0; !stop && index < value_->size(); ++index) {
        visitor->Invoke(stop, index, OptionsNode(&(*value_)[index], context_));
    }
    return true;
}

bool OptionsNode::SelectMembers(const MemberPredicate& predicate, OptionsNode& result) const {
    if (!IsObject()) {
        return Fail(kNotAnObject);
    }
    if (!predicate || !CheckNesting(*value_, kMaxNesting)) {
        return false;
    }
    Json::Value selected(value_->type());
    for (auto member = value_->begin(); member != value_->end(); ++member) {
        const std::string_view name = JsonTree::MemberName(member);
        if (predicate->Invoke(name.data())) {
            JsonTree::DemandMember(selected, name) = *member;
        }
    }
    if (selected.empty()) {
        return false;
    }
    result.own_ = std::move(selected);
    result.value_ = &result.own_;
    return true;
}

// The library marks these writers as deprecated, but the texts of options are theirs.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

void OptionsNode::Print(Writable* out, const OptionsPath& path) const {
    const OptionsNode found = GetNode(path);
    if (!found.Value().empty() && CheckNesting(found.Value(), kMaxNesting)) {
        Json::StyledWriter writer;
        out->Printf("\n%s\n", writer.write(found.Value()).c_str());
    }
}

SharedText OptionsNode::GetCompactText() const {
    if (Value().empty() || !CheckNesting(Value(), kMaxNesting)) {
        return "";
    }
    Json::FastWriter writer;
    return writer.write(Value());
}

#pragma GCC diagnostic pop

std::string OptionsNode::GetCommentText(const char* text) {
    return FormatText("//%s", text == nullptr ? "" : text);
}

bool OptionsNode::Fail(const char* message) const {
    error_ = message;
    return false;
}

bool OptionsNode::Succeed(const char* failure) const {
    return failure == nullptr || Fail(failure);
}

bool OptionsNode::CheckNesting(const Json::Value& value, unsigned levels) const {
    return !JsonTree::NestsDeeperThan(value, levels) ||
           Fail("Invalid operation: OptionsNode is nested too deeply");
}

}  // namespace Quenda
