// The right results of overlays and merges of options. A second implementation: slow, with plain
// lookups and copies of whole trees, and without the options library.
#pragma once

#include <string>

#include "json/value.h"

namespace OptionsModel {

// The value after an overlay down to `levels` levels below it.
Json::Value Overlay(const Json::Value& value, const Json::Value& source, unsigned levels);

// Changes the value as a merge does, and returns the merge's message. After a failure the value is
// in the state in which the merge leaves it. `path` is the value's place in the tree.
std::string Merge(Json::Value& value, const Json::Value& source, const Json::Value& ids,
                  const std::string& path = "");

// Equal only for equal values: types, numbers to the last bit, comments.
std::string Describe(const Json::Value& value);

}  // namespace OptionsModel
