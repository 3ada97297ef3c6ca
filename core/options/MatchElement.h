// Which elements of two arrays are the same one, for a merge of the arrays.
#pragma once

#include <vector>

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

// Compares elements of two arrays by the members that `ids` names, at every level; its leaves only
// give the type. Values without such members are the same when they are equal (a signed 1 and an
// unsigned 1 are not).
class ElementMatcher {
public:
    // Neither the IDs nor a source is owned.
    explicit ElementMatcher(const Json::Value& ids);

    // Looks up what identifies this element of the source's array, once for many comparisons.
    void SetSource(const Json::Value& source);
    // Compares it with an element of the destination's array.
    ElementMatch Match(const Json::Value& destination) const;

private:
    struct Member;

    const Json::ValueType idsType_;
    std::vector<Member> members_;
    const Json::Value* source_ = nullptr;
    Json::ValueType sourceType_ = Json::nullValue;
};

// A member that identifies.
struct ElementMatcher::Member {
    const char* name;
    const char* nameEnd;
    ElementMatcher matcher;
};

}  // namespace Quenda
