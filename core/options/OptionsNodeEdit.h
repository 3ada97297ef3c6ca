#pragma once

#include <cstdint>
#include <string>

#include "core/options/OptionsNode.h"

namespace Quenda {

// An editable view of one value in an options tree. Edits return true on success; a refused one
// leaves its message in this node (see OptionsNode). A value's comment stays with whatever replaces
// the value, unless that brings one of its own.
//
// Sources are copied before anything changes: a source may view a part of this tree, or the other
// way round. An edit that removes or replaces a value leaves every other node that views it, or
// a part of it, dangling. So a name must not be the text of a value that the edit replaces.
class OptionsNodeEdit : public OptionsNode {
public:
    // Edits a value of its own, at first null. Changes are not tracked.
    OptionsNodeEdit();
    // Edits the document's value. Every successful change sets `*modified`, which is never
    // cleared here; null tracks nothing. Neither is owned. A null value refuses all edits.
    OptionsNodeEdit(Json::Value* value, bool* modified, OptionsContext context = {});
    // A copy edits the same document, or its own copy of a value that `other` holds itself.
    // Assigning such a copy replaces the value that this node held itself, as an edit does.
    OptionsNodeEdit(const OptionsNodeEdit& other);
    OptionsNodeEdit& operator=(const OptionsNodeEdit& other);
    ~OptionsNodeEdit() override;

    // Places a comment after this value on the same line. Does not count as a change.
    bool SetComment(const char* text);

    // Makes the member this leaf, whatever leaf it was before; a null comment leaves the
    // member's comment alone. A null text is refused. A refused call may leave a null member
    // behind where there was none.
    bool SetLeaf(const char* name, const char* value, const char* comment);
    bool SetLeaf(const char* name, const std::string& value, const char* comment);
    bool SetLeaf(const char* name, uint32_t value, const char* comment);
    bool SetLeaf(const char* name, int32_t value, const char* comment);
    bool SetLeaf(const char* name, double value, const char* comment);
    bool SetLeaf(const char* name, bool value, const char* comment);
    // No other pointer passes for a bool.
    template <typename T>
    bool SetLeaf(const char* name, const T* value, const char* comment) = delete;

    // A null source is refused, and so is this node's own value.
    bool AddMember(const char* name, const OptionsNode& source, bool replace);
    // Makes the member the whole source, and not the source's member of that name, which must be
    // there all the same. This node need not have the member.
    bool ModifyMember(const char* name, const OptionsNode& source);
    // Removing a null member works, but gives false without a message and counts as no change.
    bool RemoveMember(const char* name);
    // Replaces a member `newName`. With `allowMissing` a missing `oldName` makes `newName` null.
    bool RenameMember(const char* newName, const char* oldName, bool allowMissing);
    // Moves this node's member `name` into the destination, with the refusals of `AddMember`
    // (left in the destination). Also refused, as a move to itself: a move into the moved member
    // or in place of a value that holds it.
    bool MoveMember(OptionsNodeEdit& destination, const char* newName, const char* name,
                    bool replace);

    // Arrays. An element that is null counts as missing for `SetElement`.
    bool Append(const OptionsNode& source);
    bool SetElement(uint32_t index, const OptionsNode& source);
    // Cuts the array to fewer elements than it has. Does not count as a change.
    bool Truncate(uint32_t size);

    // Lays the source over this value: objects are merged down to `maxDepth` levels below this
    // one, everything else replaced; null members of the source change nothing. Returns false
    // even when it worked: only the message tells a failure, and a success leaves an earlier
    // message alone (see ClearError).
    bool Overlay(const OptionsNode& source, uint32_t maxDepth);
    // Merges the source's changes into this value. `arrayIds` mirrors the source: where that has
    // an array, it holds an array of one element whose members identify the elements of both;
    // without it the source's array replaces this one's. Types of leaves are kept, numbers may
    // change theirs. There is no way back: a failure leaves the changes made before it, and sets
    // the modified flag. Success clears the message.
    bool Merge(const OptionsNode& source, const OptionsNode& arrayIds);

private:
    // What is edited, which is not what is viewed after a selection was put here.
    bool HoldsObject() const;
    bool HoldsArray() const;
    const Json::Value* FindMember(const char* name) const;
    bool SetLeafValue(const char* name, Json::Value value, const char* comment);
    // Whether the source may become a member: the refusals of `AddMember`.
    bool MayAdd(const char* name, const OptionsNode& source, bool replace) const;
    bool PutMember(const char* name, const OptionsNode& source);
    bool PutElement(uint32_t index, const OptionsNode& source);
    bool Changed();

    Json::Value* editValue_;
    bool* modified_;
};

}  // namespace Quenda
