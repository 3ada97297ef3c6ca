#include "core/options/MatchElement.h"

#include "core/options/JsonValue.h"
#include "core/options/OptionsAssign.h"

namespace Quenda {

ElementMatcher::ElementMatcher(const Json::Value& ids) : idsType_(ids.type()) {
    if (!ids.isObject()) {
        return;
    }
    for (auto id = ids.begin(); id != ids.end(); ++id) {
        if (!id->isNull()) {
            const char* end = nullptr;
            const char* const name = id.memberName(&end);
            members_.push_back({name, end, ElementMatcher(*id)});
        }
    }
}

void ElementMatcher::SetSource(const Json::Value& source) {
    source_ = &source;
    sourceType_ = source.type();
    for (Member& member : members_) {
        member.matcher.SetSource(JsonValue::MemberOrNull(source, member.name, member.nameEnd));
    }
}

ElementMatch ElementMatcher::Match(const Json::Value& destination) const {
    const Json::ValueType type = destination.type();
    if (!TypesCompatible(type, sourceType_) || !TypesCompatible(type, idsType_)) {
        return ElementMatch::kNotComparable;
    }
    if (type != Json::objectValue && type != Json::nullValue) {
        return *source_ == destination ? ElementMatch::kSame : ElementMatch::kDifferent;
    }
    for (const auto& [name, nameEnd, matcher] : members_) {
        if (matcher.sourceType_ == Json::nullValue) {
            return ElementMatch::kMissingInSource;
        }
        const Json::Value* const member = destination.find(name, nameEnd);
        if (member == nullptr || member->isNull()) {
            return ElementMatch::kMissingInDestination;
        }
        const ElementMatch match = matcher.Match(*member);
        if (match != ElementMatch::kSame) {
            return match;
        }
    }
    return ElementMatch::kSame;
}

}  // namespace Quenda
