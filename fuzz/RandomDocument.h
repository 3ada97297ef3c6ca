// Documents and names from random bytes. They draw from a few names, so that documents, ID trees
// and paths meet each other's members.
#pragma once

#include <string>

#include "fuzz/FuzzInput.h"
#include "json/value.h"

// A text of any bytes, a number as a text, or one of the few names.
std::string RandomText(FuzzInput& input);

// A name for a lookup: sometimes null. With a value, mostly that of a member that it has.
const char* RandomName(FuzzInput& input);
const char* RandomName(FuzzInput& input, const Json::Value& value);

// Sometimes 10,000 levels deep, or just at the limit of what is copied.
Json::Value RandomDocument(FuzzInput& input);

// A copy of the document, here and there something else: mostly another scalar of the same type,
// sometimes null, another type, a member or an element more or less. A document that is too deep
// for a copy gives an unrelated one.
Json::Value RandomChanges(FuzzInput& input, const Json::Value& document);

// A tree of array IDs that mostly mirrors the changes, as a merge wants it.
Json::Value RandomArrayIds(FuzzInput& input, const Json::Value& changes);

// The document itself, or a value in its upper levels.
Json::Value& RandomPart(FuzzInput& input, Json::Value& document);
