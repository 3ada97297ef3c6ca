#pragma once

#include <string_view>

#include "json/value.h"

namespace Quenda {

// Finds the members of an object, or of null, for names that come in ascending order. It goes
// along with them, where a lookup of each name would search the object anew.
class MemberCursor {
public:
    // Nobody else may add or remove members of the object while the cursor is in use.
    explicit MemberCursor(Json::Value& object)
        : object_(object), next_(object.begin()), end_(object.end()) {}

    // The member of the name between the pointers, made, with a null value, when there is none.
    Json::Value& Demand(const char* name, const char* nameEnd);

private:
    Json::Value& object_;
    Json::ValueIterator next_;
    // Of the members that there were at first: a null value has no iterators to go on with.
    const Json::ValueIterator end_;
};

inline Json::Value& MemberCursor::Demand(const char* name, const char* nameEnd) {
    const std::string_view wanted(name, static_cast<size_t>(nameEnd - name));
    for (; next_ != end_; ++next_) {
        const char* end = nullptr;
        const char* const found = next_.memberName(&end);
        const int order = wanted.compare({found, static_cast<size_t>(end - found)});
        if (order == 0) {
            Json::Value& member = *next_;
            ++next_;
            return member;
        }
        if (order < 0) {
            break;
        }
    }
    return *object_.demand(name, nameEnd);
}

}  // namespace Quenda
