// Short ways to write JSON values down in tests.
#pragma once

#include <initializer_list>
#include <utility>

#include "core/options/OptionsNode.h"
#include "json/value.h"

inline Json::Value Obj(std::initializer_list<std::pair<const char*, Json::Value>> members) {
    Json::Value value(Json::objectValue);
    for (const auto& member : members) {
        value[member.first] = member.second;
    }
    return value;
}

inline Json::Value Arr(std::initializer_list<Json::Value> elements) {
    Json::Value value(Json::arrayValue);
    for (const auto& element : elements) {
        value.append(element);
    }
    return value;
}

// An object in an object ... `levels` deep.
inline Json::Value Nested(unsigned levels) {
    Json::Value value;
    for (unsigned i = 0; i < levels; ++i) {
        Json::Value outer(Json::objectValue);
        outer["a"].swap(value);
        value.swap(outer);
    }
    return value;
}

// JSON text on one line, without its line end; "null" for null.
inline std::string Text(const Json::Value& value) {
    std::string text = Quenda::OptionsNode(Arr({value})).GetCompactText().Get();
    return text.substr(1, text.size() - 3);
}
