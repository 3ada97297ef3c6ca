#include "core/options/OptionsNodeEdit.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/options/JsonValue.h"
#include "core/options/OptionsAssign.h"

namespace Quenda {

namespace {

// What is put into a document may nest one level less than what can be read out of it.
constexpr unsigned kMaxSourceNesting = JsonValue::kMaxNesting - 1;

constexpr char kMissingObject[] = "Invalid operation: object does not exist";
constexpr char kMoveToSelf[] = "Invalid operation: move object from self to self";

// Without recursion: a document may nest deeper than what is ever put into it at once.
bool IsPartOf(const Json::Value* part, const Json::Value& whole) {
    std::vector<const Json::Value*> pending{&whole};
    while (!pending.empty()) {
        const Json::Value* value = pending.back();
        pending.pop_back();
        if (value == part) {
            return true;
        }
        for (const Json::Value& child : *value) {
            pending.push_back(&child);
        }
    }
    return false;
}

}  // namespace

OptionsNodeEdit::OptionsNodeEdit()
    : OptionsNode(nullptr, {}), editValue_(OwnValue()), modified_(nullptr) {}

OptionsNodeEdit::OptionsNodeEdit(Json::Value* value, bool* modified, OptionsContext context)
    : OptionsNode(value, context), editValue_(value), modified_(modified) {}

OptionsNodeEdit::OptionsNodeEdit(const OptionsNodeEdit& other)
    : OptionsNode(other), editValue_(other.editValue_), modified_(other.modified_) {
    if (other.editValue_ != nullptr && ViewsOwnValue()) {
        editValue_ = OwnValue();
    }
}

OptionsNodeEdit& OptionsNodeEdit::operator=(const OptionsNodeEdit& other) {
    if (this != &other) {
        OptionsNode::operator=(other);
        const bool editsOwn = other.editValue_ != nullptr && ViewsOwnValue();
        editValue_ = editsOwn ? OwnValue() : other.editValue_;
        modified_ = other.modified_;
    }
    return *this;
}

OptionsNodeEdit::~OptionsNodeEdit() {
    editValue_ = nullptr;
}

bool OptionsNodeEdit::HoldsObject() const {
    return editValue_ != nullptr && JsonValue::IsObject(*editValue_);
}

bool OptionsNodeEdit::CopySource(Json::Value& copy, const OptionsNode& source) const {
    if (!CheckNesting(source.Value(), kMaxSourceNesting)) {
        return false;
    }
    copy = source.Value();
    return true;
}

OptionsNodeEdit::Sources OptionsNodeEdit::LookAtSources(const Json::Value& source,
                                                        const Json::Value& ids) const {
    using JsonValue::Finding;
    using JsonValue::kMaxNesting;
    using JsonValue::LookThrough;
    const Finding finding = std::max(LookThrough(source, kMaxNesting, {editValue_}),
                                     LookThrough(ids, kMaxNesting, {editValue_}));
    if (finding == Finding::kTooDeep) {
        return Sources::kTooDeep;
    }
    // A document that is too deep to be looked through may have anything in it.
    const bool apart = finding == Finding::kNothing &&
                       LookThrough(*editValue_, kMaxNesting, {&source, &ids}) == Finding::kNothing;
    return apart ? Sources::kApart : Sources::kShared;
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
    JsonValue::SetSameLineComment(*editValue_, GetCommentText(text));
    return true;
}

bool OptionsNodeEdit::SetLeafValue(const char* name, Json::Value value, const char* comment) {
    if (!HoldsObject() || name == nullptr) {
        return Fail("Invalid operation: OptionsNodeEdit is not object type");
    }
    Json::Value& member = (*editValue_)[name];
    if (value.isNull() || member.isObject() || member.isArray()) {
        return Fail("Invalid operation: the child node is not leaf node");
    }
    member.swapPayload(value);
    if (comment != nullptr) {
        JsonValue::SetSameLineComment(member, GetCommentText(comment));
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
    if (!replace && JsonValue::FindMember(*editValue_, name) != nullptr) {
        return Fail("Invalid operation: object with the same name exists");
    }
    return true;
}

bool OptionsNodeEdit::AddMember(const char* name, const OptionsNode& source, bool replace) {
    return MayAdd(name, source, replace) && PutMember(name, source);
}

bool OptionsNodeEdit::PutMember(const char* name, const OptionsNode& source) {
    Json::Value member;
    if (!CopySource(member, source)) {
        return false;
    }
    AssignValue((*editValue_)[name], std::move(member));
    return Changed();
}

bool OptionsNodeEdit::ModifyMember(const char* name, const OptionsNode& source) {
    if (!HoldsObject()) {
        return Fail("Invalid operation: cannot modify non-object OptionsNodesEdit");
    }
    if (JsonValue::FindMember(source.Value(), name) == nullptr) {
        return Fail("Invalid operation: object of the name does not exist");
    }
    return AddMember(name, source, true);
}

bool OptionsNodeEdit::RemoveMember(const char* name) {
    if (!HoldsObject() || JsonValue::FindMember(*editValue_, name) == nullptr) {
        return Fail(kMissingObject);
    }
    Json::Value removed;
    (void)editValue_->removeMember(name, &removed);
    return !removed.isNull() && Changed();
}

bool OptionsNodeEdit::RenameMember(const char* newName, const char* oldName, bool allowMissing) {
    const Json::Value* old = HoldsObject() ? JsonValue::FindMember(*editValue_, oldName) : nullptr;
    if (!HoldsObject() || newName == nullptr || (old == nullptr && !allowMissing)) {
        return Fail(kMissingObject);
    }
    Json::Value& renamed = (*editValue_)[newName];
    if (old == &renamed) {
        return Changed();  // both names are the same
    }
    Json::Value removed;
    if (old != nullptr) {
        (void)editValue_->removeMember(oldName, &removed);
    }
    AssignValue(renamed, std::move(removed));
    return Changed();
}

bool OptionsNodeEdit::MoveMember(OptionsNodeEdit& destination, const char* newName,
                                 const char* name, bool replace) {
    if (&destination == this) {
        return destination.Fail(kMoveToSelf);
    }
    Json::Value* moved = HoldsObject() ? JsonValue::FindMember(*editValue_, name) : nullptr;
    if (moved == nullptr) {
        return Fail(kMissingObject);
    }
    const OptionsNodeEdit member(moved, destination.modified_, destination.Context());
    if (!destination.MayAdd(newName, member, replace)) {
        return false;
    }
    const Json::Value* replaced = JsonValue::FindMember(destination.Value(), newName);
    if (IsPartOf(destination.editValue_, *moved) ||
        (replace && replaced != nullptr && IsPartOf(moved, *replaced))) {
        return destination.Fail(kMoveToSelf);
    }
    return destination.PutMember(newName, member) && RemoveMember(name);
}

}  // namespace Quenda
