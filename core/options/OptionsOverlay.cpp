#include "core/options/JsonValue.h"
#include "core/options/OptionsAssign.h"
#include "core/options/OptionsNodeEdit.h"

namespace Quenda {

namespace {

void OverlayValue(Json::Value& destination, const Json::Value& source, uint32_t depth,
                  uint32_t maxDepth) {
    if (source.isNull()) {
        return;
    }
    if (!source.isObject() || !JsonValue::IsObject(destination)) {
        AssignValue(destination, source);
        return;
    }
    for (auto member = source.begin(); member != source.end(); ++member) {
        if (member->isNull()) {
            continue;
        }
        const char* nameEnd = nullptr;
        const char* name = member.memberName(&nameEnd);
        Json::Value& target = *destination.demand(name, nameEnd);
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
    if (CheckNesting(source.Value(), JsonValue::kMaxNesting)) {
        // A copy: the source may be a part of what is about to change.
        OverlayValue(*editValue_, Json::Value(source.Value()), 0, maxDepth);
        (void)Changed();
    }
    // The outcome is told by the message alone, on purpose.
    return false;
}

}  // namespace Quenda
