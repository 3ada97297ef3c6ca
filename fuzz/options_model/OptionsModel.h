// What overlays and merges of options must come to, told a second time: slowly, by plain lookups
// and copies of whole trees, and without the options library.
#pragma once

#include <string>

#include "json/value.h"

namespace OptionsModel {

// The value after an overlay down to `levels` levels below it.
Json::Value Overlay(const Json::Value& value, const Json::Value& source, unsigned levels);

// Changes the value as a merge does, and returns its message. After a failure the value is what
// the merge leaves behind. `path` leads to the value.
std::string Merge(Json::Value& value, const Json::Value& source, const Json::Value& ids,
                  const std::string& path = "");

// Tells values apart by all that they are: types, numbers to the last bit, comments.
std::string Describe(const Json::Value& value);

}  // namespace OptionsModel
