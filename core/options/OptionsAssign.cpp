#include "core/options/OptionsAssign.h"

#include "core/options/JsonValue.h"

namespace Quenda {

namespace {

void AssignComment(Json::Value& destination, const Json::Value& source) {
    if (source.hasComment(Json::commentAfterOnSameLine)) {
        // One line end is dropped from whatever is set: it must not be one of the comment's own.
        JsonValue::SetSameLineComment(destination,
                                      source.getComment(Json::commentAfterOnSameLine) + '\n');
    }
}

}  // namespace

void AssignValue(Json::Value& destination, const Json::Value& source) {
    destination.copyPayload(source);  // comments stay where they are
    AssignComment(destination, source);
}

void AssignValue(Json::Value& destination, Json::Value&& source) {
    destination.swapPayload(source);
    AssignComment(destination, source);
}

bool AssignCompatible(Json::Value& destination, const Json::Value& source) {
    if (!TypesCompatible(destination.type(), source.type())) {
        return false;
    }
    AssignValue(destination, source);
    return true;
}

}  // namespace Quenda
