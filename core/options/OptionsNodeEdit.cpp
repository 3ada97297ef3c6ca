#include "core/options/OptionsNodeEdit.h"

#include <utility>

#include "core/options/JsonValue.h"
#include "core/options/internal/JsonMerge.h"
#include "core/options/internal/JsonTree.h"

namespace Quenda {

namespace {

// A source may nest in one level less than a value that is read.
constexpr unsigned kMaxSourceNesting = OptionsNode::kMaxNesting - 1;

constexpr char kNullNode[] = "Invalid operation: merge on Null OptionsNode(s)";
constexpr char kMissingObject[] = "Invalid operation: object does not exist";
constexpr char kMoveToSelf[] = "Invalid operation: move object from self to self";

}  // namespace

OptionsNodeEdit::OptionsNodeEdit()
    : OptionsNode(nullptr, {}), editValue_(OwnValue()), modified_(nullptr) {}

OptionsNodeEdit::OptionsNodeEdit(Json::Value* value, bool* modified, OptionsContext context)
    : OptionsNode(value, context), editValue_(value), modified_(modified) {}

OptionsNodeEdit::OptionsNodeEdit(const OptionsNodeEdit& other) : OptionsNodeEdit() {
    *this = other;
}

OptionsNodeEdit& OptionsNodeEdit::operator=(const OptionsNodeEdit& other) {
    if (this == &other) {
        return *this;
    }
    OptionsNode::operator=(other);
    editValue_ = other.editValue_;
    modified_ = other.modified_;
    if (other.editValue_ == other.OwnValue()) {
        // Not copied yet when `other` views another value than it edits.
        SetOwnValue(*other.OwnValue());
        editValue_ = OwnValue();
    }
    return *this;
}

OptionsNodeEdit::~OptionsNodeEdit() {
    editValue_ = nullptr;
}

bool OptionsNodeEdit::HoldsObject() const {
    return editValue_ != nullptr && JsonValue::IsObject(*editValue_);
}

const Json::Value* OptionsNodeEdit::FindMember(const char* name) const {
    return editValue_ == nullptr ? nullptr : JsonTree::FindMember(*editValue_, name);
}

bool OptionsNodeEdit::HoldsArray() const {
    return editValue_ != nullptr && JsonValue::IsArray(*editValue_);
}

bool OptionsNodeEdit::Changed() {
    if (modified_ != nullptr) {
        *modified_ = true;
    }
    return true;
}

bool OptionsNodeEdit::SetComment(const char* text) {
    if (editValue_ == nullptr || text == nullptr) {
        return Fail("Null OptionsNodeEdit or invalid comment");
    }
    JsonTree::SetSameLineComment(*editValue_, GetCommentText(text));
    return true;
}

bool OptionsNodeEdit::SetLeafValue(const char* name, Json::Value value, const char* comment) {
    if (!HoldsObject() || name == nullptr) {
        return Fail("Invalid operation: OptionsNodeEdit is not object type");
    }
    Json::Value& member = JsonTree::DemandMember(*editValue_, name);
    if (value.isNull() || member.isObject() || member.isArray()) {
        return Fail("Invalid operation: the child node is not leaf node");
    }
    member.swapPayload(value);
    if (comment != nullptr) {
        JsonTree::SetSameLineComment(member, GetCommentText(comment));
    }
    return Changed();
}

bool OptionsNodeEdit::SetLeaf(const char* name, const char* value, const char* comment) {
    return SetLeafValue(name, value == nullptr ? Json::Value() : Json::Value(value), comment);
}

bool OptionsNodeEdit::SetLeaf(const char* name, const std::string& value, const char* comment) {
    return SetLeaf(name, value.c_str(), comment);
}

bool OptionsNodeEdit::SetLeaf(const char* name, uint32_t value, const char* comment) {
    return SetLeafValue(name, Json::Value(value), comment);
}

bool OptionsNodeEdit::SetLeaf(const char* name, int32_t value, const char* comment) {
    return SetLeafValue(name, Json::Value(value), comment);
}

bool OptionsNodeEdit::SetLeaf(const char* name, double value, const char* comment) {
    return SetLeafValue(name, Json::Value(value), comment);
}

bool OptionsNodeEdit::SetLeaf(const char* name, bool value, const char* comment) {
    return SetLeafValue(name, Json::Value(value), comment);
}

bool OptionsNodeEdit::MayAdd(const char* name, const OptionsNode& source, bool replace) const {
    if (!HoldsObject() || name == nullptr) {
        return Fail("Invalid operation: cannot add object to non-object OptionsNodeEdit");
    }
    if (source.Value().isNull() || &source.Value() == editValue_) {
        return Fail("Invalid operation: add empty object or itself");
    }
    if (!replace && JsonTree::FindMember(*editValue_, name) != nullptr) {
        return Fail("Invalid operation: object with the same name exists");
    }
    return true;
}

bool OptionsNodeEdit::AddMember(const char* name, const OptionsNode& source, bool replace) {
    return MayAdd(name, source, replace) && PutMember(name, source);
}

bool OptionsNodeEdit::PutMember(const char* name, const OptionsNode& source) {
    if (!CheckNesting(source.Value(), kMaxSourceNesting)) {
        return false;
    }
    // Copied before anything changes: the source may be a part of this value, or contain it.
    Json::Value copy = source.Value();
    JsonTree::AssignValue(JsonTree::DemandMember(*editValue_, name), std::move(copy));
    return Changed();
}

bool OptionsNodeEdit::ModifyMember(const char* name, const OptionsNode& source) {
    if (!HoldsObject()) {
        return Fail("Invalid operation: cannot modify non-object OptionsNodesEdit");
    }
    if (JsonTree::FindMember(source.Value(), name) == nullptr) {
        return Fail("Invalid operation: object of the name does not exist");
    }
    return AddMember(name, source, true);
}

bool OptionsNodeEdit::RemoveMember(const char* name) {
    if (FindMember(name) == nullptr) {
        return Fail(kMissingObject);
    }
    Json::Value removed;
    (void)editValue_->removeMember(name, &removed);
    return !removed.isNull() && Changed();
}

bool OptionsNodeEdit::RenameMember(const char* newName, const char* oldName, bool allowMissing) {
    const Json::Value* old = FindMember(oldName);
    if (!HoldsObject() || newName == nullptr || (old == nullptr && !allowMissing)) {
        return Fail(kMissingObject);
    }
    Json::Value& renamed = JsonTree::DemandMember(*editValue_, newName);
    if (old == &renamed) {
        return Changed();  // both names are the same
    }
    Json::Value removed;
    if (old != nullptr) {
        (void)editValue_->removeMember(oldName, &removed);
    }
    JsonTree::AssignValue(renamed, std::move(removed));
    return Changed();
}

bool OptionsNodeEdit::MoveMember(OptionsNodeEdit& destination, const char* newName,
                                 const char* name, bool replace) {
    if (&destination == this) {
        return destination.Fail(kMoveToSelf);
    }
    const Json::Value* moved = FindMember(name);
    if (moved == nullptr) {
        return Fail(kMissingObject);
    }
    const OptionsNode member(moved);
    if (!destination.MayAdd(newName, member, replace)) {
        return false;
    }
    const Json::Value* replaced = destination.FindMember(newName);
    if (JsonTree::IsPartOf(*destination.editValue_, *moved) ||
        (replaced != nullptr && JsonTree::IsPartOf(*moved, *replaced))) {
        return destination.Fail(kMoveToSelf);
    }
    return destination.PutMember(newName, member) && RemoveMember(name);
}

bool OptionsNodeEdit::Append(const OptionsNode& source) {
    if (!HoldsArray() || &source == this) {
        return Fail(
            "Invalid operation: cannot append to non-array OptionsNodeEdit or append itself");
    }
    return PutElement(editValue_->size(), source);
}

bool OptionsNodeEdit::SetElement(uint32_t index, const OptionsNode& source) {
    if (!HoldsArray() || std::as_const(*editValue_)[index].isNull()) {
        return Fail("Invalid operation: array index does not exist");
    }
    return PutElement(index, source);
}

bool OptionsNodeEdit::PutElement(uint32_t index, const OptionsNode& source) {
    if (!CheckNesting(source.Value(), kMaxSourceNesting)) {
        return false;
    }
    Json::Value copy = source.Value();  // as in PutMember
    JsonTree::AssignValue(JsonTree::DemandElement(*editValue_, index), std::move(copy));
    return Changed();
}

bool OptionsNodeEdit::Truncate(uint32_t size) {
    if (!HoldsArray() || size >= editValue_->size()) {
        return Fail("Invalid operation: the array is already smaller than the truncated size");
    }
    if (size > 0) {
        // In an array with gaps the last element may not exist yet. Without it, the library's
        // resize ends the process.
        (void)(*editValue_)[size - 1];
    }
    editValue_->resize(size);
    return true;
}

// Both read copies: the source may be a part of this value, or contain it.

bool OptionsNodeEdit::Overlay(const OptionsNode& source, uint32_t maxDepth) {
    if (editValue_ == nullptr || source.IsEmpty()) {
        return Fail(kNullNode);
    }
    if (!CheckNesting(source.Value(), kMaxNesting)) {
        return false;
    }
    JsonTree::OverlayValue(*editValue_, Json::Value(source.Value()), maxDepth);
    (void)Changed();
    return false;  // on purpose: only the message tells a failure
}

bool OptionsNodeEdit::Merge(const OptionsNode& source, const OptionsNode& arrayIds) {
    if (editValue_ == nullptr || source.IsEmpty()) {
        return Fail(kNullNode);
    }
    if (!CheckNesting(source.Value(), kMaxNesting) ||
        !CheckNesting(arrayIds.Value(), kMaxNesting)) {
        return false;
    }
    std::string message = JsonTree::MergeValue(*editValue_, Json::Value(source.Value()),
                                               Json::Value(arrayIds.Value()));
    const bool merged = message.empty();
    SetError(std::move(message));
    (void)Changed();
    return merged;
}

}  // namespace Quenda
