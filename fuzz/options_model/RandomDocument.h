// Documents and names from random bytes. They draw from a few names, so that documents, ID trees
// and paths meet each other's members.
#pragma once

#include <string>

#include "fuzz/options_model/RandomInput.h"
#include "json/value.h"

namespace OptionsModel {

// A text of any bytes, a number as a text, or one of the few names.
std::string RandomText(RandomInput& input);

// A name for a lookup: sometimes null. With a value, mostly that of a member that it has.
const char* RandomName(RandomInput& input);
const char* RandomName(RandomInput& input, const Json::Value& value);

// Sometimes 10,000 levels deep, or just at the limit of what is copied.
Json::Value RandomDocument(RandomInput& input);

// A copy of the document, here and there something else: mostly another scalar of the same type,
// sometimes null, another type, a member or an element more or less. A document that is too deep
// for a copy gives an unrelated one.
Json::Value RandomChanges(RandomInput& input, const Json::Value& document);

// A tree of array IDs that mostly mirrors the changes, as a merge wants it.
Json::Value RandomArrayIds(RandomInput& input, const Json::Value& changes);

// The document itself, or a value in its upper levels.
Json::Value& RandomPart(RandomInput& input, Json::Value& document);

}  // namespace OptionsModel
