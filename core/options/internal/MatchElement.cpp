#include "core/options/internal/MatchElement.h"

#include "core/options/JsonValue.h"
#include "core/options/internal/JsonEdit.h"

namespace Quenda {

ElementMatch MatchElement(const Json::Value& destination, const Json::Value& source,
                          const Json::Value& ids) {
    if (!TypesCompatible(destination.type(), source.type()) ||
        !TypesCompatible(destination.type(), ids.type())) {
        return ElementMatch::kNotComparable;
    }
    if (!JsonValue::IsObject(destination)) {
        return source == destination ? ElementMatch::kSame : ElementMatch::kDifferent;
    }
    if (!ids.isObject()) {
        return ElementMatch::kSame;  // nothing identifies
    }
    for (auto id = ids.begin(); id != ids.end(); ++id) {
        if (id->isNull()) {
            continue;
        }
        const std::string_view name = JsonValue::MemberName(id);
        const Json::Value& sourceMember = JsonValue::MemberOrNull(source, name);
        if (sourceMember.isNull()) {
            return ElementMatch::kMissingInSource;
        }
        const Json::Value& destinationMember = JsonValue::MemberOrNull(destination, name);
        if (destinationMember.isNull()) {
            return ElementMatch::kMissingInDestination;
        }
        const ElementMatch match = MatchElement(destinationMember, sourceMember, *id);
        if (match != ElementMatch::kSame) {
            return match;
        }
    }
    return ElementMatch::kSame;
}

}  // namespace Quenda
