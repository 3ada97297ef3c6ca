#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "core/callback/Callback.h"
#include "core/text/SharedText.h"
#include "json/value.h"

namespace Quenda {

class OptionsNode;
class Writable;

// Two words that a node hands to every node derived from it. The tree gives them no meaning.
using OptionsContext = std::array<uintptr_t, 2>;
// Member names from the outermost to the innermost; array elements cannot be reached by a path.
using OptionsPath = std::vector<const char*>;

// Called with a flag, the name or index, and the node. Setting the flag ends the walk. A visitor
// must not add members or elements to the visited value, or remove them.
using MemberVisitor = CallbackRef<void(bool&, const char*, const OptionsNode&)>;
using ElementVisitor = CallbackRef<void(bool&, uint32_t, const OptionsNode&)>;
using MemberPredicate = CallbackRef<bool(const char*)>;

// A read-only view of one value in a JSON document. The document is not owned and must outlive the
// node. A node can also view a value that it holds itself. A node that is looked up in such a node
// views a part of that value, and must not outlive it.
//
// When a document releases a text or a name, it wipes the memory; comments are not wiped. The
// strings that a node returns are ordinary ones and not wiped.
//
// A null value counts as an object and as an array without elements. A name may be null and is
// never found.
//
// Nothing throws. A call that fails returns false, an empty text or a node that views a null value,
// and leaves its message in this node (`Error`). A call that succeeds leaves an earlier message. On
// failure a getter with a default sets its output to that; one without leaves its output unchanged.
//
// Arrays and objects may nest in kMaxNesting levels; a value that becomes a member or an element,
// in one level less. Copying or writing out a deeper value fails with "Invalid operation:
// OptionsNode is nested too deeply".
class OptionsNode {
public:
    // Each level costs stack, and no real document needs so many.
    static constexpr unsigned kMaxNesting = 1000;

    // Empty: views nothing.
    OptionsNode() = default;
    // Views the value. For a null pointer, holds and views a null value.
    explicit OptionsNode(const Json::Value* value, OptionsContext context = {});
    // Views a copy of the value.
    explicit OptionsNode(const Json::Value& value, OptionsContext context = {});
    // A copy views the same value, or its own copy of a value that `other` holds itself.
    OptionsNode(const OptionsNode& other);
    OptionsNode& operator=(const OptionsNode& other);
    virtual ~OptionsNode() = default;

    // True only when the node views nothing: false for a null value and for an empty container.
    bool IsEmpty() const { return value_ == nullptr; }
    bool IsObject() const;

    // When the member or element is absent or null, the result views a null value, without a
    // message.
    OptionsNode GetMember(const char* name) const;
    OptionsNode GetElement(uint32_t index) const;
    // An empty path gives this node's value. Fails for a value without elements, on any path.
    OptionsNode GetNode(const OptionsPath& path) const;

    // The text of a scalar; a real has six decimals. Empty for null, arrays and objects.
    static std::string GetValueString(const Json::Value& value);
    // Also empty, without a message, when this node is not an object, or not an array.
    std::string GetMemberString(const char* name) const;
    std::string GetElementString(uint32_t index) const;

    // Accept numbers and booleans, converted by JsonValue, and strings that begin with a number
    // ("%i", "%u", "%lf" and "%f" of scanf(3)). On failure `out` is unchanged.
    bool GetInt(int32_t& out, const Json::Value& value) const;
    bool GetUInt(uint32_t& out, const Json::Value& value) const;
    bool GetDouble(double& out, const Json::Value& value) const;
    bool GetFloat(float& out, const Json::Value& value) const;

    // The same for a member. On failure `out` is `defaultValue`.
    bool GetMemberValue(int32_t& out, const char* name, int32_t defaultValue) const;
    bool GetMemberValue(uint32_t& out, const char* name, uint32_t defaultValue) const;
    bool GetMemberValue(double& out, const char* name, double defaultValue) const;
    bool GetMemberValue(float& out, const char* name, float defaultValue) const;

    // Visit members in the byte order of their names, elements by index. False, without a message,
    // when this node is not an object, or not an array, or the visitor is empty.
    bool ForEachMember(const MemberVisitor& visitor) const;
    bool ForEachElement(const ElementVisitor& visitor) const;
    // Copies the members whose names the predicate accepts into an object that `result` then holds
    // and views. Without such a member, returns false and leaves `result` unchanged.
    bool SelectMembers(const MemberPredicate& predicate, OptionsNode& result) const;

    // Writes the value at the path as indented JSON text, with its comments and between two line
    // ends. Writes nothing when the lookup fails or the value is empty.
    void Print(Writable* out, const OptionsPath& path) const;
    // JSON text on one line, without comments, and a line end. Empty for a null value, an empty
    // container and an empty node.
    SharedText GetCompactText() const;
    // A comment as the tree writes it: "//" and the text. Null counts as the empty text.
    static std::string GetCommentText(const char* text);

    // The message of the last failed call. Ask its `IsEmpty`: it is absent when no call failed, and
    // an empty text after a successful `OptionsNodeEdit::Merge`.
    const SharedText& Error() const { return error_; }
    // Makes it absent: a message after the next call is then that call's.
    void ClearError() { error_ = {}; }
    const OptionsContext& Context() const { return context_; }
    // The value viewed; a null value for an empty node.
    const Json::Value& Value() const { return IsEmpty() ? Json::Value::nullSingleton() : *value_; }

protected:
    // Keeps the message and gives false.
    bool Fail(const char* message) const;
    void SetError(SharedText message) const { error_ = std::move(message); }
    // Fails when the value nests deeper than that.
    bool CheckNesting(const Json::Value& value, unsigned levels) const;
    // The value that this node holds itself, even when it views another one.
    Json::Value* OwnValue() { return &own_; }
    const Json::Value* OwnValue() const { return &own_; }
    // Holds a copy of the value, or a null value when it nests too deeply.
    void SetOwnValue(const Json::Value& value);

private:
    template <typename T>
    using Getter = bool (OptionsNode::*)(T& out, const Json::Value& value) const;

    OptionsNode Derive(const Json::Value* value) const;
    // True when `failure` is null. Keeps the message otherwise.
    bool Succeed(const char* failure) const;
    template <typename T>
    bool GetMemberValue(T& out, const char* name, T defaultValue, Getter<T> get) const;

    const Json::Value* value_ = nullptr;
    Json::Value own_;
    OptionsContext context_{};
    mutable SharedText error_;
};

}  // namespace Quenda
