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

// Called with a flag to set when the walk shall end, the name or index, and the node. A visitor
// must not add or remove members or elements of the value that is walked.
using MemberVisitor = CallbackRef<void(bool&, const char*, const OptionsNode&)>;
using ElementVisitor = CallbackRef<void(bool&, uint32_t, const OptionsNode&)>;
using MemberPredicate = CallbackRef<bool(const char*)>;

// A read-only view of one value in a JSON document, which belongs to someone else and must
// outlive the node; or of a value that the node holds itself. What is looked up in such a node
// views a part of it and must not outlive it.
//
// The document wipes its texts and names, but not its comments, when it releases them. Texts handed
// out here (of values, of whole trees, messages with a path) are ordinary strings: not wiped.
//
// A null value counts as an object and as an array without elements. Nothing throws: a call
// that fails gives false, an empty text or a node that views a null value, and leaves its message
// in the node that was asked (`Error`); a call that succeeds leaves an earlier message alone.
// Names may be null and are then found nowhere. A getter with a default gives that on every
// failure, of whatever kind, and says false; a getter without one leaves its output alone. A value
// in which arrays and objects nest in more than kMaxNesting levels is neither copied nor
// written out: that fails with "Invalid operation: OptionsNode is nested too deeply". A value
// that becomes a member or an element may nest in one level less.
class OptionsNode {
public:
    // Each level costs stack, and no real document needs so many.
    static constexpr unsigned kMaxNesting = 1000;

    // Empty: views nothing.
    OptionsNode() = default;
    // Views the value; null makes a node that views a null value of its own.
    explicit OptionsNode(const Json::Value* value, OptionsContext context = {});
    // Views a copy of the value.
    explicit OptionsNode(const Json::Value& value, OptionsContext context = {});
    // A copy views the same value, or its own copy of a value that `other` holds itself.
    OptionsNode(const OptionsNode& other);
    OptionsNode& operator=(const OptionsNode& other);
    virtual ~OptionsNode() = default;

    // True only for a node that views nothing, not for a null value or a container without
    // elements.
    bool IsEmpty() const { return value_ == nullptr; }
    bool IsObject() const;

    // An absent member or element, or one that is null, gives a node that views a null value,
    // without a message.
    OptionsNode GetMember(const char* name) const;
    OptionsNode GetElement(uint32_t index) const;
    // An empty path gives this node's value. A value without elements cannot be asked at all.
    OptionsNode GetNode(const OptionsPath& path) const;

    // The text of a scalar, reals with six decimals; empty for null, arrays and objects.
    static std::string GetValueString(const Json::Value& value);
    // Also empty, without a message, when this node is no object or no array.
    std::string GetMemberString(const char* name) const;
    std::string GetElementString(uint32_t index) const;

    // Take numbers and booleans, converted as JsonValue does it, and strings that begin with a
    // number ("%i", "%u", "%lf" and "%f" of scanf(3)). On failure `out` stays as it was.
    bool GetInt(int32_t& out, const Json::Value& value) const;
    bool GetUInt(uint32_t& out, const Json::Value& value) const;
    bool GetDouble(double& out, const Json::Value& value) const;
    bool GetFloat(float& out, const Json::Value& value) const;

    // The same for a member. On failure `out` is `defaultValue`.
    bool GetMemberValue(int32_t& out, const char* name, int32_t defaultValue) const;
    bool GetMemberValue(uint32_t& out, const char* name, uint32_t defaultValue) const;
    bool GetMemberValue(double& out, const char* name, double defaultValue) const;
    bool GetMemberValue(float& out, const char* name, float defaultValue) const;

    // Members come in ascending byte order of their names. False, without a message, when this
    // node is no object or no array, or the visitor is empty.
    bool ForEachMember(const MemberVisitor& visitor) const;
    bool ForEachElement(const ElementVisitor& visitor) const;
    // Makes `result` view a value of its own with the members whose names the predicate takes.
    // False when there are none; `result` is then untouched.
    bool SelectMembers(const MemberPredicate& predicate, OptionsNode& result) const;

    // Writes the value at the path as indented JSON text with its comments, a line end before
    // and after it; nothing when the lookup fails or finds an empty value.
    void Print(Writable* out, const OptionsPath& path) const;
    // JSON text on one line, without comments, and the line end with which the JSON library's
    // writer closes it. Empty when there is no value or nothing in it.
    SharedText GetCompactText() const;
    // A comment as the tree writes it: "//" and the text. Null counts as the empty text.
    static std::string GetCommentText(const char* text);

    // The message of the last failed call. Ask its `IsEmpty`: it is absent when no call failed, and
    // an empty text after a successful `OptionsNodeEdit::Merge`.
    const SharedText& Error() const { return error_; }
    // Makes it absent, so that a message left by the next call is known to be its own.
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
    // The value that this node holds itself, whether it views that or another one.
    Json::Value* OwnValue() { return &own_; }
    const Json::Value* OwnValue() const { return &own_; }
    // Holds a copy of the value, or a null value when it nests too deeply.
    void SetOwnValue(const Json::Value& value);

private:
    template <typename T>
    using Getter = bool (OptionsNode::*)(T& out, const Json::Value& value) const;

    OptionsNode Derive(const Json::Value* value) const;
    // True for null; else keeps the message of the failure.
    bool Succeed(const char* failure) const;
    template <typename T>
    bool GetMemberValue(T& out, const char* name, T defaultValue, Getter<T> get) const;

    const Json::Value* value_ = nullptr;
    Json::Value own_;
    OptionsContext context_{};
    mutable SharedText error_;
};

}  // namespace Quenda
