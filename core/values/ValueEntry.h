#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/output/Writable.h"

namespace Quenda {

enum class ValueKind { kInt = 0, kDouble = 1, kText = 2, kUInt = 3 };

// The name, kind and default of a value. The texts are not owned. The name must not be null, a
// default text may be.
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

// One named value of a fixed kind. It starts with its default.
class ValueEntry {
public:
    explicit ValueEntry(const ValueDefinition& definition);

    const char* Name() const { return definition_.name; }
    ValueKind Kind() const { return definition_.kind; }

    // Rejects nothing: a text without a number gives 0, a number beyond 32 bits the limit. A minus
    // negates an unsigned number modulo 2^32. Whole numbers may be decimal, hexadecimal ("0x") or
    // octal ("0"). Null gives a null text or 0.
    void SetFromText(const char* text);
    void ResetToDefault();

    // Null for other kinds, too. Valid until the entry is set or reset.
    const char* AsText() const;
    // Other kinds are converted: texts are parsed as floating-point numbers, and a fraction is cut
    // off. Out of range, `AsInt` gives the nearest limit. `AsUInt` gives the largest number above
    // its range, and the bits of `AsInt` for a negative number.
    int32_t AsInt() const;
    uint32_t AsUInt() const;
    double AsDouble() const;

    // Prints one line with the name. A null text is printed as "(null)".
    void Print(Writable* out) const;
    // Prints only the value. A line end follows a text but not a number, on purpose.
    void PrintValue(Writable* out) const;

private:
    void SetText(const char* text);
    std::string ValueText() const;

    ValueDefinition definition_;
    double number_ = 0.0;  // holds every whole number of 32 bits exactly
    std::optional<std::string> text_;
};

}  // namespace Quenda
