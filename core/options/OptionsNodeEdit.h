#pragma once

#include <cstdint>
#include <string>

#include "core/options/OptionsNode.h"

namespace Quenda {

// An editable view of one value in an options tree. Edits return true on success. A refused edit
// leaves its message in this node (see OptionsNode). A value that replaces another one takes over
// its comment, unless it has a comment already.
//
// Sources are copied before anything changes: a source may view a part of this tree, or contain it.
// When an edit removes or replaces a value, all other nodes that view it, or a part of it, dangle.
// So a name must not be the text of a value that the edit replaces.
class OptionsNodeEdit : public OptionsNode {
public:
    // Holds and edits a value, which is null at first. Changes are not tracked.
    OptionsNodeEdit();
    // Edits the document's value. Every successful change sets `*modified`, and none clears it;
    // null tracks nothing. Neither is owned. With a null `value` all edits are refused.
    OptionsNodeEdit(Json::Value* value, bool* modified, OptionsContext context = {});
    // A copy edits the same document, or its own copy of a value that `other` holds itself.
    // Assigning such a copy replaces the value that this node held itself, as an edit does.
    OptionsNodeEdit(const OptionsNodeEdit& other);
    OptionsNodeEdit& operator=(const OptionsNodeEdit& other);
    ~OptionsNodeEdit() override;

    // Places a comment after this value on the same line. Does not count as a change.
    bool SetComment(const char* text);

    // Sets the member to this leaf, or adds it. An old leaf may have any type, but arrays and
    // objects are refused, and so is a null text. A null comment leaves the member's comment. A
    // refused call may leave a null member where there was none.
    bool SetLeaf(const char* name, const char* value, const char* comment);
    bool SetLeaf(const char* name, const std::string& value, const char* comment);
    bool SetLeaf(const char* name, uint32_t value, const char* comment);
    bool SetLeaf(const char* name, int32_t value, const char* comment);
    bool SetLeaf(const char* name, double value, const char* comment);
    bool SetLeaf(const char* name, bool value, const char* comment);
    // Otherwise other pointers would be taken for booleans.
    template <typename T>
    bool SetLeaf(const char* name, const T* value, const char* comment) = delete;

    // A null source is refused, and so is this node's own value.
    bool AddMember(const char* name, const OptionsNode& source, bool replace);
    // Sets this node's member to the whole source; adds the member if there is none. Is refused if
    // the source has no member of that name, although that member is not used. Both on purpose.
    bool ModifyMember(const char* name, const OptionsNode& source);
    // Also removes a null member, but then returns false, without a message, and counts as no
    // change, on purpose.
    bool RemoveMember(const char* name);
    // Replaces a member `newName`. With `allowMissing` a missing `oldName` makes `newName` null.
    bool RenameMember(const char* newName, const char* oldName, bool allowMissing);
    // Moves this node's member `name` into the destination. The destination refuses, with its
    // message, what `AddMember` refuses, and a move into the moved member or over a value that
    // contains it.
    bool MoveMember(OptionsNodeEdit& destination, const char* newName, const char* name,
                    bool replace);

    // For arrays. For `SetElement` a null element counts as missing.
    bool Append(const OptionsNode& source);
    bool SetElement(uint32_t index, const OptionsNode& source);
    // Cuts the array to fewer elements than it has. Does not count as a change.
    bool Truncate(uint32_t size);

    // Lays the source over this value: merges objects down to `maxDepth` levels below this one and
    // replaces everything else. Null members of the source change nothing. Always returns false, on
    // purpose. Only the message tells a failure, and a success leaves an earlier message: call
    // `ClearError` first.
    bool Overlay(const OptionsNode& source, uint32_t maxDepth);
    // Merges the source's changes into this value. `arrayIds` has the source's structure. In the
    // place of an array it has an array of one element, whose members identify the elements of both
    // arrays; without it, the source's array replaces this one's. A leaf keeps its type, but one
    // kind of number may replace another. A failure keeps the changes made before it and sets the
    // modified flag. Success empties the message.
    bool Merge(const OptionsNode& source, const OptionsNode& arrayIds);

private:
    // About the edited value. After `SelectMembers` into this node it is not the viewed value.
    bool HoldsObject() const;
    bool HoldsArray() const;
    const Json::Value* FindMember(const char* name) const;
    bool SetLeafValue(const char* name, Json::Value value, const char* comment);
    // Whether `AddMember` accepts the source.
    bool MayAdd(const char* name, const OptionsNode& source, bool replace) const;
    bool PutMember(const char* name, const OptionsNode& source);
    bool PutElement(uint32_t index, const OptionsNode& source);
    bool Changed();

    Json::Value* editValue_;
    bool* modified_;
};

}  // namespace Quenda
