#pragma once

#include "json/value.h"

namespace Quenda {

// How an element of a source's array compares with one of the destination's.
enum class ElementMatch {
    kDifferent = 0,
    kSame = 1,
    kMissingInSource = 2,
    kMissingInDestination = 3,
    kNotComparable = 4,
};

// Compares the elements by the members that `ids` names, at every level; its leaves only give the
// type. Values without such members are the same when they are equal (a signed 1 and an unsigned 1
// are not).
ElementMatch MatchElement(const Json::Value& destination, const Json::Value& source,
                          const Json::Value& ids);

}  // namespace Quenda
