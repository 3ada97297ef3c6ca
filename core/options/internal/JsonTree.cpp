#include "core/options/internal/JsonTree.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace Quenda::JsonTree {

namespace {

bool IsNumber(Json::ValueType type) {
    return type == Json::intValue || type == Json::uintValue || type == Json::realValue;
}

// The library would do the same, but drop the comment.
void MakeContainer(Json::Value& value, Json::ValueType type) {
    if (value.isNull()) {
        Json::Value container(type);
        value.swapPayload(container);
    }
}

}  // namespace

std::string_view MemberName(const Json::ValueConstIterator& member) {
    const char* end = nullptr;
    const char* const name = member.memberName(&end);
    return {name, static_cast<size_t>(end - name)};
}

const Json::Value* FindMember(const Json::Value& value, const char* name) {
    return name != nullptr && value.isObject() ? value.find(name, name + strlen(name)) : nullptr;
}

const Json::Value& MemberOrNull(const Json::Value& value, std::string_view name) {
    const Json::Value* member =
        value.isObject() ? value.find(name.data(), name.data() + name.size()) : nullptr;
    return member == nullptr ? Json::Value::nullSingleton() : *member;
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

bool IsPartOf(const Json::Value& part, const Json::Value& whole) {
    // Without recursion: edits at many levels can make a document nest deeper than any one source.
    std::vector<const Json::Value*> pending{&whole};
    while (!pending.empty()) {
        const Json::Value* const value = pending.back();
        pending.pop_back();
        if (value == &part) {
            return true;
        }
        for (const Json::Value& child : *value) {
            pending.push_back(&child);
        }
    }
    return false;
}

bool TypesCompatible(Json::ValueType oldType, Json::ValueType newType) {
    return oldType == newType || oldType == Json::nullValue || newType == Json::nullValue ||
           (IsNumber(oldType) && IsNumber(newType));
}

Json::Value& DemandMember(Json::Value& object, std::string_view name) {
    MakeContainer(object, Json::objectValue);
    return *object.demand(name.data(), name.data() + name.size());
}

Json::Value& DemandElement(Json::Value& array, Json::ArrayIndex index) {
    MakeContainer(array, Json::arrayValue);
    return array[index];
}

void AssignValue(Json::Value& destination, Json::Value source) {
    destination.swapPayload(source);  // comments stay where they are
    if (source.hasComment(Json::commentAfterOnSameLine)) {
        // The library drops a line end from the end of each comment that is set. An additional one
        // keeps the comment whole.
        SetSameLineComment(destination, source.getComment(Json::commentAfterOnSameLine) + '\n');
    }
}

void SetSameLineComment(Json::Value& value, const std::string& text) {
    value.setComment(text, Json::commentAfterOnSameLine);
}

}  // namespace Quenda::JsonTree
