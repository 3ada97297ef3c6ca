#include "fuzz/options_model/OptionsModel.h"

namespace OptionsModel {

namespace {

// Results of comparing an element of the source with one of the destination.
constexpr char kDifferent[] = "different";
constexpr char kSame[] = "same";

bool Compatible(const Json::Value& old, const Json::Value& next) {
    // The library does not take a boolean for a number.
    return old.isNull() || next.isNull() || (old.isNumeric() && next.isNumeric()) ||
           old.type() == next.type();
}

// The source, with the comment of the old value unless it has one.
Json::Value Replaced(const Json::Value& old, const Json::Value& source) {
    constexpr auto kSameLine = Json::commentAfterOnSameLine;
    Json::Value result(source);
    if (!source.hasComment(kSameLine) && old.hasComment(kSameLine)) {
        result.setComment(old.getComment(kSameLine) + "\n",
                          kSameLine);  // setComment drops the line end
    }
    return result;
}

// The member, or null if there is none of that name.
Json::Value Member(const Json::Value& value, const std::string& name) {
    return value.isObject() ? value.get(name, Json::Value()) : Json::Value();
}

// Returns kDifferent, kSame, or the end of an error message.
std::string Compare(const Json::Value& old, const Json::Value& source, const Json::Value& ids) {
    if (!Compatible(old, source) || !Compatible(old, ids)) {
        return "Array elements not comparable";
    }
    if (!old.isObject() && !old.isNull()) {
        return old == source ? kSame : kDifferent;
    }
    std::string found = kSame;
    for (const std::string& name : ids.isObject() ? ids.getMemberNames() : Json::Value::Members()) {
        const Json::Value oldId = Member(old, name);
        const Json::Value sourceId = Member(source, name);
        if (found != kSame || ids[name].isNull()) {
            continue;
        }
        if (sourceId.isNull() || oldId.isNull()) {
            found = std::string("Missing array ID in ") +
                    (sourceId.isNull() ? "source options" : "destination options");
        } else {
            found = Compare(oldId, sourceId, ids[name]);
        }
    }
    return found;
}

std::string MergeElement(Json::Value& array, const Json::Value& element, Json::ArrayIndex index,
                         const Json::Value& ids, const std::string& path) {
    for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
        const std::string found = Compare(array[i], element, ids);
        if (found == kSame) {
            return Merge(array[i], element, ids, path + "/");
        }
        if (found != kDifferent) {
            return path + "[" + std::to_string(index) + "]: " + found;
        }
    }
    if (!array.empty() && !Compatible(array[0U], element)) {
        return "Invalid operation: adding incompatible element to array OptionsNode";
    }
    array[array.size()] = element;
    return "";
}

std::string MergeArray(Json::Value& array, const Json::Value& source, const Json::Value& ids,
                       const std::string& path) {
    const bool wrongIds = !ids.isNull() && !ids.isArray();
    if ((!array.isNull() && !array.isArray()) || (array.isNull() && wrongIds)) {
        return path + ": Cannot merge array to non-array";
    }
    if (wrongIds) {
        return path + ": Array IDs type does not match destination type";
    }
    if (ids.isArray() && ids.size() != 1) {
        return path + ": Multiple elements in array IDs";
    }
    if (ids.isNull() || array.isNull()) {
        array = Replaced(array, source);
        return "";
    }
    std::string message;
    for (Json::ArrayIndex i = 0; i < source.size() && message.empty(); ++i) {
        if (!source[i].isNull()) {
            message = MergeElement(array, source[i], i, ids[0U], path);
        }
    }
    return message;
}

std::string MergeObject(Json::Value& object, const Json::Value& source, const Json::Value& ids,
                        const std::string& path) {
    if (object.isNull()) {
        object = Replaced(object, source);
        return "";
    }
    if (!object.isObject()) {
        return path + ": Cannot merge object to non-object";
    }
    if (!ids.isNull() && !ids.isObject() && !source.empty()) {
        return path + ": Array IDs type does not match destination type";
    }
    std::string message;
    for (const std::string& name : source.getMemberNames()) {
        if (message.empty()) {
            message =
                Merge(object[name], source[name], Member(ids, name), path + "/" + name.c_str());
        }
    }
    return message;
}

}  // namespace

Json::Value Overlay(const Json::Value& value, const Json::Value& source, unsigned levels) {
    if (source.isNull()) {
        return value;
    }
    if (!source.isObject() || !(value.isNull() || value.isObject())) {
        return Replaced(value, source);
    }
    Json::Value result(value);
    for (const std::string& name : source.getMemberNames()) {
        if (!source[name].isNull()) {
            const Json::Value old = Member(value, name);
            result[name] =
                levels == 0 ? Replaced(old, source[name]) : Overlay(old, source[name], levels - 1);
        }
    }
    return Replaced(value, result);  // an overlay loses the comment of a null value
}

std::string Merge(Json::Value& value, const Json::Value& source, const Json::Value& ids,
                  const std::string& path) {
    if (source.isNull()) {
        return "";
    }
    if (source.isObject()) {
        return MergeObject(value, source, ids, path);
    }
    if (source.isArray()) {
        return MergeArray(value, source, ids, path);
    }
    if (!Compatible(value, source)) {
        return "Invalid operation: cannot change type of existing OptionsNodeEdit";
    }
    value = Replaced(value, source);
    return "";
}

std::string Describe(const Json::Value& value) {
    std::string text = "<" + std::to_string(value.type());
    if (value.isObject()) {
        for (const std::string& name : value.getMemberNames()) {
            text += " " + name + ":" + Describe(value[name]);
        }
    } else if (value.isArray()) {
        for (Json::ArrayIndex i = 0; i < value.size(); ++i) {
            text += " " + Describe(value[i]);
        }
    } else {
        text += " " + value.asString();
    }
    return text + " " + value.getComment(Json::commentAfterOnSameLine) + ">";
}

}  // namespace OptionsModel
