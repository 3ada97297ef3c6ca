// Documents and names from random bytes. There are few different names, so that documents, ID trees
// and paths often have the same ones.
#pragma once

#include <string>

#include "fuzz/options_model/RandomInput.h"
#include "json/value.h"

namespace OptionsModel {

// A text of any bytes, a number as a text, or one of the few names.
std::string RandomText(RandomInput& input);

// A name for a lookup, sometimes null. With a value, mostly the name of one of its members.
const char* RandomName(RandomInput& input);
const char* RandomName(RandomInput& input, const Json::Value& value);

// Sometimes 10,000 levels deep, or just at the limit for copies.
Json::Value RandomDocument(RandomInput& input);

// A copy of the document with some changes: mostly another scalar of the same type, sometimes null,
// another type, a member or an element more or less. If the document is too deep for a copy, the
// result is an unrelated one.
Json::Value RandomChanges(RandomInput& input, const Json::Value& document);

// A tree of array IDs, mostly one that fits the changes.
Json::Value RandomArrayIds(RandomInput& input, const Json::Value& changes);

// The document itself, or a value in its upper levels.
Json::Value& RandomPart(RandomInput& input, Json::Value& document);

}  // namespace OptionsModel
