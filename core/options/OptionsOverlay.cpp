#include "core/options/JsonValue.h"
#include "core/options/MemberCursor.h"
#include "core/options/OptionsAssign.h"
#include "core/options/OptionsNodeEdit.h"

namespace Quenda {

namespace {

void OverlayValue(Json::Value& destination, const Json::Value& source, uint32_t depth,
                  uint32_t maxDepth) {
    const Json::ValueType type = source.type();
    if (type == Json::nullValue) {
        return;
    }
    if (type != Json::objectValue || !JsonValue::IsObject(destination)) {
        AssignValue(destination, source);
        return;
    }
    MemberCursor members(destination);
    for (auto member = source.begin(), end = source.end(); member != end; ++member) {
        if (member->isNull()) {
            continue;
        }
        const char* nameEnd = nullptr;
        const char* name = member.memberName(&nameEnd);
        Json::Value& target = members.Demand(name, nameEnd);
        if (depth < maxDepth) {
            OverlayValue(target, *member, depth + 1, maxDepth);
        } else {
            AssignValue(target, *member);
        }
    }
}

}  // namespace

bool OptionsNodeEdit::Overlay(const OptionsNode& source, uint32_t maxDepth) {
    if (editValue_ == nullptr || source.IsEmpty()) {
        return Fail("Invalid operation: merge on Null OptionsNode(s)");
    }
    switch (LookAtSources(source.Value(), Json::Value::nullSingleton())) {
        case Sources::kTooDeep:
            return FailTooDeep();
        case Sources::kShared:
            OverlayValue(*editValue_, Json::Value(source.Value()), 0, maxDepth);
            break;
        case Sources::kApart:
            OverlayValue(*editValue_, source.Value(), 0, maxDepth);
            break;
    }
    (void)Changed();
    // The outcome is told by the message alone, on purpose.
    return false;
}

}  // namespace Quenda
