// JSON values as short texts, with ' for ". The reader takes negative whole numbers for unsigned
// ones when numbers have 32 bits: write none of them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "json/reader.h"
#include "json/writer.h"

inline Json::Value J(const char* text) {
    Json::CharReaderBuilder builder;
    builder["allowSingleQuotes"] = true;
    builder["allowSpecialFloats"] = true;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value value;
    EXPECT_TRUE(reader->parse(text, text + std::strlen(text), &value, nullptr)) << text;
    return value;
}

inline std::string Text(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["commentStyle"] = "None";
    std::string text = Json::writeString(builder, value);
    std::replace(text.begin(), text.end(), '"', '\'');
    return text;
}
