#include "core/options/OptionsNode.h"

#include <utility>

#include "core/options/JsonValue.h"
#include "core/options/internal/JsonEdit.h"
#include "json/writer.h"

namespace Quenda {

namespace {

constexpr char kNotAnObject[] = "Invalid node type: OptionsNode must be object type";

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

// What this node holds itself stays unless it is replaced: the other node may view a part of it.
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
    own_ = CheckNesting(value, JsonValue::kMaxNesting) ? value : Json::Value();
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
    return Derive(JsonValue::FindMember(*value_, name));
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
        current = JsonValue::FindMember(*current, name);
        if (current == nullptr || current->isNull()) {
            (void)Fail("empty OptionsNode down the path");
            return Derive(nullptr);
        }
    }
    return OptionsNode(current, context_);
}

bool OptionsNode::ForEachMember(const MemberVisitor& visitor) const {
    if (!IsObject() || !visitor) {
        return false;
    }
    bool stop = false;
    for (auto member = value_->begin(); !stop && member != value_->end(); ++member) {
        visitor->Invoke(stop, JsonValue::MemberName(member).data(),
                        OptionsNode(&*member, context_));
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
    if (!predicate || !CheckNesting(*value_, JsonValue::kMaxNesting)) {
        return false;
    }
    Json::Value selected(value_->type());
    for (auto member = value_->begin(); member != value_->end(); ++member) {
        const std::string_view name = JsonValue::MemberName(member);
        if (predicate->Invoke(name.data())) {
            DemandMember(selected, name) = *member;
        }
    }
    if (selected.empty()) {
        return false;
    }
    result.own_ = std::move(selected);
    result.value_ = &result.own_;
    return true;
}

// The library has marked its plain writers as deprecated; the text of options is theirs.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

void OptionsNode::Print(Writable* out, const OptionsPath& path) const {
    const OptionsNode found = GetNode(path);
    if (!found.Value().empty() && CheckNesting(found.Value(), JsonValue::kMaxNesting)) {
        Json::StyledWriter writer;
        out->Printf("\n%s\n", writer.write(found.Value()).c_str());
    }
}

SharedText OptionsNode::GetCompactText() const {
    if (Value().empty() || !CheckNesting(Value(), JsonValue::kMaxNesting)) {
        return "";
    }
    Json::FastWriter writer;
    return writer.write(Value());
}

#pragma GCC diagnostic pop

bool OptionsNode::Fail(const char* message) const {
    error_ = message;
    return false;
}

bool OptionsNode::FailTooDeep() const {
    return Fail("Invalid operation: OptionsNode is nested too deeply");
}

bool OptionsNode::CheckNesting(const Json::Value& value, unsigned levels) const {
    return !JsonValue::NestsDeeperThan(value, levels) || FailTooDeep();
}

}  // namespace Quenda
