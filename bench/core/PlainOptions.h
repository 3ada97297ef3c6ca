// What the options tree does, written by hand as a plain recursion over the JSON values: without
// nodes, without a look at how deep they nest and whether source and destination share values.
#pragma once

#include <string>
#include <vector>

#include "json/value.h"

namespace Bench {

void PlainOverlay(Json::Value& destination, const Json::Value& source);
// Returns a message when it fails.
std::string PlainMerge(Json::Value& destination, const Json::Value& source, const Json::Value& ids);
// Null when there is none.
const Json::Value* PlainLookup(const Json::Value& value, const std::vector<const char*>& path);
// The text that jsoncpp's writer for one line makes.
std::string PlainText(const Json::Value& value);

}  // namespace Bench
