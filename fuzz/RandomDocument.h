// Documents, names and paths from the fuzzer's bytes. They draw from a few names, so that
// documents, ID trees and paths meet each other's members.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <string>

#include "json/value.h"

using FuzzInput = FuzzedDataProvider;

// A text of any bytes, a number as a text, or one of the few.
std::string RandomText(FuzzInput& input);

// A name for a lookup: sometimes null. With a value, mostly that of a member that it has.
const char* RandomName(FuzzInput& input);
const char* RandomName(FuzzInput& input, const Json::Value& value);

// Sometimes 10,000 levels deep, or just at the limit of what is copied.
Json::Value RandomDocument(FuzzInput& input);

// A tree of array IDs that mostly mirrors the changes, as a merge wants it.
Json::Value RandomArrayIds(FuzzInput& input, const Json::Value& changes);

// A value somewhere in the upper levels of the document, or the document itself.
Json::Value& RandomPart(FuzzInput& input, Json::Value& document);
