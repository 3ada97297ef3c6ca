// The part of OptionsNodeEdit that edits arrays.
#include <utility>

#include "core/options/JsonValue.h"
#include "core/options/OptionsAssign.h"
#include "core/options/OptionsNodeEdit.h"

namespace Quenda {

bool OptionsNodeEdit::HoldsArray() const {
    return editValue_ != nullptr && JsonValue::IsArray(*editValue_);
}

bool OptionsNodeEdit::Append(const OptionsNode& source) {
    if (!HoldsArray() || &source == this) {
        return Fail(
            "Invalid operation: cannot append to non-array OptionsNodeEdit or append itself");
    }
    Json::Value element;
    if (!CopySource(element, source)) {
        return false;
    }
    AssignValue((*editValue_)[editValue_->size()], std::move(element));
    return Changed();
}

bool OptionsNodeEdit::SetElement(uint32_t index, const OptionsNode& source) {
    if (!HoldsArray() || std::as_const(*editValue_)[index].isNull()) {
        return Fail("Invalid operation: array index does not exist");
    }
    Json::Value element;
    if (!CopySource(element, source)) {
        return false;
    }
    AssignValue((*editValue_)[index], std::move(element));
    return Changed();
}

bool OptionsNodeEdit::Truncate(uint32_t size) {
    if (!HoldsArray() || size >= editValue_->size()) {
        return Fail("Invalid operation: the array is already smaller than the truncated size");
    }
    if (size > 0) {
        // An array that was filled with gaps has its last element only from here on, without
        // which the library would not find the size it wants.
        (void)(*editValue_)[size - 1];
    }
    editValue_->resize(size);
    return true;
}

}  // namespace Quenda
