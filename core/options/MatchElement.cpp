#include "core/options/MatchElement.h"

#include "core/options/JsonValue.h"
#include "core/options/OptionsAssign.h"

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
        return ElementMatch::kSame;
    }
    for (auto id = ids.begin(); id != ids.end(); ++id) {
        if (id->isNull()) {
            continue;
        }
        const char* end = nullptr;
        const char* name = id.memberName(&end);
        const Json::Value& sourceId = JsonValue::MemberOrNull(source, name, end);
        const Json::Value& destinationId = JsonValue::MemberOrNull(destination, name, end);
        if (sourceId.isNull()) {
            return ElementMatch::kMissingInSource;
        }
        if (destinationId.isNull()) {
            return ElementMatch::kMissingInDestination;
        }
        const ElementMatch match = MatchElement(destinationId, sourceId, *id);
        if (match != ElementMatch::kSame) {
            return match;
        }
    }
    return ElementMatch::kSame;
}

}  // namespace Quenda
