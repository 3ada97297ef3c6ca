#pragma once

#include <string>

#include "json/value.h"

namespace Quenda {

// Appends the value's JSON text on one line, without comments: byte for byte what the JSON
// library's FastWriter makes of it. False, with a part of the text appended, when arrays and
// objects nest in more than `levels` levels.
bool AppendCompactText(std::string& text, const Json::Value& value, unsigned levels);

}  // namespace Quenda
