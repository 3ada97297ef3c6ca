// JSON values written down as short texts, with ' for ".
#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "core/options/OptionsNode.h"
#include "json/value.h"

// Takes well-formed text without blanks. A number with a point is real, one that ends in u
// unsigned.
inline Json::Value ParseNext(const char*& text) {
    if (*text == '{' || *text == '[') {
        const bool object = *text == '{';
        Json::Value value(object ? Json::objectValue : Json::arrayValue);
        while (std::strchr("}]", *++text) == nullptr) {
            if (object) {
                const std::string name = ParseNext(text).asString();
                value[name] = ParseNext(++text);
            } else {
                value.append(ParseNext(text));
            }
            if (*text != ',') {
                break;
            }
        }
        ++text;
        return value;
    }
    const std::string word(text, std::strcspn(text + 1, ",:]}") + 1);
    text += word.size();
    if (word[0] == '\'') {
        return word.substr(1, word.size() - 2);
    }
    const bool real = word.find('.') != std::string::npos;
    return word == "null"       ? Json::Value()
           : word == "true"     ? Json::Value(true)
           : real               ? Json::Value(std::stod(word))
           : word.back() == 'u' ? Json::Value(static_cast<Json::UInt>(std::stoul(word)))
                                : Json::Value(std::stoi(word));
}

inline Json::Value J(const char* text) {
    return ParseNext(text);
}

// The other way round; the kinds of numbers do not show.
inline std::string Text(const Json::Value& value) {
    Json::Value list;
    list.append(value);
    std::string text = Quenda::OptionsNode(&list).GetCompactText().Get();
    std::replace(text.begin(), text.end(), '"', '\'');
    return text.substr(1, text.size() - 3);
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
