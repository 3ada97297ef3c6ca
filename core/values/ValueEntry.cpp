#include "core/values/ValueEntry.h"

#include <cstdlib>

#include "core/numbers/TargetNumbers.h"
#include "core/text/FormatText.h"

namespace Quenda {

ValueEntry::ValueEntry(const ValueDefinition& definition) : definition_(definition) {
    ResetToDefault();
}

void ValueEntry::SetText(const char* text) {
    text_ = text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

void ValueEntry::SetFromText(const char* text) {
    const char* number = text == nullptr ? "" : text;
    switch (Kind()) {
        case ValueKind::kInt:
            number_ = StrToInt32(number, 0);
            break;
        case ValueKind::kDouble:
            number_ = strtod(number, nullptr);
            break;
        case ValueKind::kText:
            SetText(text);
            break;
        case ValueKind::kUInt:
            number_ = StrToUInt32(number, 0);
            break;
    }
}

void ValueEntry::ResetToDefault() {
    number_ = definition_.defaultNumber;
    SetText(definition_.defaultText);
}

const char* ValueEntry::AsText() const {
    return text_.has_value() ? text_->c_str() : nullptr;
}

int32_t ValueEntry::AsInt() const {
    return DoubleToInt32(AsDouble());
}

uint32_t ValueEntry::AsUInt() const {
    return DoubleToUInt32(AsDouble());
}

double ValueEntry::AsDouble() const {
    if (Kind() == ValueKind::kText) {
        return text_.has_value() ? strtod(AsText(), nullptr) : 0.0;
    }
    return number_;
}

std::string ValueEntry::ValueText() const {
    switch (Kind()) {
        case ValueKind::kInt:
            return FormatText("%d", AsInt());
        case ValueKind::kDouble:
            return FormatText("%f", number_);
        case ValueKind::kText:
            return FormatText("\"%s\"", text_.has_value() ? AsText() : "(null)");
        case ValueKind::kUInt:
            return FormatText("%u", AsUInt());
    }
    return "";
}

void ValueEntry::Print(Writable* out) const {
    out->Printf("%s = %s\n", Name(), ValueText().c_str());
}

void ValueEntry::PrintValue(Writable* out) const {
    out->Printf(Kind() == ValueKind::kText ? "%s\n" : "%s", ValueText().c_str());
}

}  // namespace Quenda
