#include "bench/core/PlainOptions.h"

#include <cstring>

#include "json/writer.h"

namespace Bench {

namespace {

bool IsNumber(const Json::Value& value) {
    return value.isNumeric() && !value.isBool();
}

bool Compatible(const Json::Value& one, const Json::Value& other) {
    return one.isNull() || other.isNull() || one.type() == other.type() ||
           (IsNumber(one) && IsNumber(other));
}

const Json::Value& Member(const Json::Value& value, const char* name, const char* end) {
    const Json::Value* const member = value.isObject() ? value.find(name, end) : nullptr;
    return member == nullptr ? Json::Value::nullSingleton() : *member;
}

bool SameElement(const Json::Value& one, const Json::Value& other, const Json::Value& ids) {
    for (auto id = ids.begin(); id != ids.end(); ++id) {
        const char* end = nullptr;
        const char* const name = id.memberName(&end);
        if (Member(one, name, end) != Member(other, name, end)) {
            return false;
        }
    }
    return true;
}

std::string MergeElement(Json::Value& array, const Json::Value& source, const Json::Value& ids) {
    for (Json::Value& element : array) {
        if (SameElement(element, source, ids)) {
            return PlainMerge(element, source, ids);
        }
    }
    array.append(source);
    return {};
}

void AppendText(std::string& text, const Json::Value& value);

void AppendArray(std::string& text, const Json::Value& value) {
    const char* separator = "";
    text += '[';
    for (const Json::Value& element : value) {
        text += separator;
        separator = ",";
        AppendText(text, element);
    }
    text += ']';
}

void AppendObject(std::string& text, const Json::Value& value) {
    const char* separator = "";
    text += '{';
    for (auto member = value.begin(); member != value.end(); ++member) {
        const char* end = nullptr;
        text += separator;
        separator = ",";
        text += Json::valueToQuotedString(member.memberName(&end));
        text += ':';
        AppendText(text, *member);
    }
    text += '}';
}

void AppendText(std::string& text, const Json::Value& value) {
    switch (value.type()) {
        case Json::nullValue:
            text += "null";
            break;
        case Json::intValue:
            text += Json::valueToString(value.asInt());
            break;
        case Json::uintValue:
            text += Json::valueToString(value.asUInt());
            break;
        case Json::realValue:
            text += Json::valueToString(value.asDouble());
            break;
        case Json::stringValue:
            text += Json::valueToQuotedString(value.asCString());
            break;
        case Json::booleanValue:
            text += Json::valueToString(value.asBool());
            break;
        case Json::arrayValue:
            AppendArray(text, value);
            break;
        case Json::objectValue:
            AppendObject(text, value);
            break;
    }
}

}  // namespace

void PlainOverlay(Json::Value& destination, const Json::Value& source) {
    if (!source.isObject() || !(destination.isObject() || destination.isNull())) {
        destination = source;
        return;
    }
    for (auto member = source.begin(); member != source.end(); ++member) {
        if (!member->isNull()) {
            const char* end = nullptr;
            const char* const name = member.memberName(&end);
            PlainOverlay(*destination.demand(name, end), *member);
        }
    }
}

std::string PlainMerge(Json::Value& destination, const Json::Value& source,
                       const Json::Value& ids) {
    if (source.isNull()) {
        return {};
    }
    if (!Compatible(destination, source)) {
        return "incompatible types";
    }
    if (source.isObject() && destination.isObject()) {
        for (auto member = source.begin(); member != source.end(); ++member) {
            const char* end = nullptr;
            const char* const name = member.memberName(&end);
            std::string message =
                PlainMerge(*destination.demand(name, end), *member, Member(ids, name, end));
            if (!message.empty()) {
                return message;
            }
        }
        return {};
    }
    if (source.isArray() && destination.isArray() && ids.size() == 1) {
        for (const Json::Value& element : source) {
            std::string message = MergeElement(destination, element, ids[0U]);
            if (!message.empty()) {
                return message;
            }
        }
        return {};
    }
    destination = source;
    return {};
}

const Json::Value* PlainLookup(const Json::Value& value, const std::vector<const char*>& path) {
    const Json::Value* current = &value;
    for (const char* name : path) {
        current = current->isObject() ? current->find(name, name + strlen(name)) : nullptr;
        if (current == nullptr) {
            return nullptr;
        }
    }
    return current;
}

std::string PlainText(const Json::Value& value) {
    std::string text;
    AppendText(text, value);
    return text + "\n";
}

}  // namespace Bench
