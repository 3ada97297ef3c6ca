#include "core/options/CompactText.h"

#include <cstring>

#include "json/writer.h"

namespace Quenda {

namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

// The library's own text. Its writer looks each member up by a copy of its name and knows no limit
// to the nesting: it is left to write what has no members.
std::string ScalarText(const Json::Value& value) {
    Json::FastWriter writer;
    writer.omitEndingLineFeed();
    return writer.write(value);
}

#pragma GCC diagnostic pop

std::string NameText(const char* name, const char* nameEnd) {
    const bool hasZeroByte = name + std::strlen(name) != nameEnd;
    return hasZeroByte ? ScalarText(Json::Value(name, nameEnd)) : Json::valueToQuotedString(name);
}

bool AppendArray(std::string& text, const Json::Value& array, unsigned levels) {
    text += '[';
    for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
        text += i == 0 ? "" : ",";
        if (!AppendCompactText(text, array[i], levels)) {
            return false;
        }
    }
    text += ']';
    return true;
}

bool AppendObject(std::string& text, const Json::Value& object, unsigned levels) {
    const char* separator = "{";
    for (auto member = object.begin(), end = object.end(); member != end; ++member) {
        const char* nameEnd = nullptr;
        const char* const name = member.memberName(&nameEnd);
        text += separator;
        text += NameText(name, nameEnd);
        text += ':';
        if (!AppendCompactText(text, *member, levels)) {
            return false;
        }
        separator = ",";
    }
    text += object.empty() ? "{}" : "}";
    return true;
}

}  // namespace

bool AppendCompactText(std::string& text, const Json::Value& value, unsigned levels) {
    switch (value.type()) {
        case Json::arrayValue:
            return levels > 0 && AppendArray(text, value, levels - 1);
        case Json::objectValue:
            return levels > 0 && AppendObject(text, value, levels - 1);
        default:
            text += ScalarText(value);
            return true;
    }
}

}  // namespace Quenda
