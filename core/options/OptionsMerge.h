// The merge of a tree of changes into a tree of options, element by element in arrays.
#pragma once

#include <string>

#include "json/value.h"

namespace Quenda {

// How an element of the source's array compares with one of the destination's.
enum class ElementMatch {
    kDifferent = 0,
    kSame = 1,
    kMissingInSource = 2,
    kMissingInDestination = 3,
    kNotComparable = 4,
};

// Compares by the members that `ids` names, at every level; its leaves only give the type. Values
// without such members are the same when they are equal (a signed 1 and an unsigned 1 are not).
ElementMatch MatchElement(const Json::Value& destination, const Json::Value& source,
                          const Json::Value& ids);

// Returns the message of the failure that ended the merge, empty when all went well. What was
// merged before it stays. `source` and `ids` must not be parts of `destination`.
std::string MergeValue(Json::Value& destination, const Json::Value& source, const Json::Value& ids);

}  // namespace Quenda
