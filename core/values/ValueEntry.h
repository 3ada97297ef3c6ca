#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/output/Writable.h"

namespace Quenda {

enum class ValueKind { kInt = 0, kDouble = 1, kText = 2, kUInt = 3 };

// What a value is before anything is loaded into it. Neither the name, which is not null, nor a
// default text, which may be null, is owned.
struct ValueDefinition {
    static ValueDefinition Int(const char* name, int32_t value) {
        return {name, ValueKind::kInt, static_cast<double>(value), nullptr};
    }
    static ValueDefinition Double(const char* name, double value) {
        return {name, ValueKind::kDouble, value, nullptr};
    }
    static ValueDefinition Text(const char* name, const char* value) {
        return {name, ValueKind::kText, 0.0, value};
    }
    static ValueDefinition UInt(const char* name, uint32_t value) {
        return {name, ValueKind::kUInt, static_cast<double>(value), nullptr};
    }

    const char* name;
    ValueKind kind;
    double defaultNumber;
    const char* defaultText;
};

// One named value of a fixed kind, with its default. Starts with the default.
class ValueEntry {
public:
    explicit ValueEntry(const ValueDefinition& definition);

    const char* Name() const { return definition_.name; }
    ValueKind Kind() const { return definition_.kind; }

    // Rejects nothing: a number that cannot be parsed is 0, one out of range the nearest limit.
    // Whole numbers may be decimal, hexadecimal ("0x") or octal ("0"). Null gives a null text.
    void SetFromText(const char* text);
    void ResetToDefault();

    // Null for other kinds, too. Valid until the entry is set or reset.
    const char* AsText() const;
    // Another kind is converted: a text as `SetFromText` parses it, a signed to an unsigned number
    // by its bits, and a fraction is cut off.
    int32_t AsInt() const;
    uint32_t AsUInt() const;
    double AsDouble() const;

    // One line, with the name. A null text shows as "(null)".
    void Print(Writable* out) const;
    // The value alone. A text ends its line, a number does not, on purpose.
    void PrintValue(Writable* out) const;

private:
    void SetText(const char* text);
    std::string ValueText() const;

    ValueDefinition definition_;
    double number_ = 0.0;  // holds every whole number of 32 bits exactly
    std::optional<std::string> text_;
};

}  // namespace Quenda
