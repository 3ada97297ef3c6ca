#include "core/values/ValueEntry.h"

#include <cstdlib>

#include "core/text/FormatText.h"
#include "core/text/TargetNumbers.h"

namespace Quenda {

namespace {

std::optional<std::string> CopyText(const char* text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

}  // namespace

ValueEntry::ValueEntry(const ValueDefinition& definition) : definition_(definition) {
    ResetToDefault();
}

void ValueEntry::SetFromText(const char* text) {
    const char* number = text == nullptr ? "" : text;
    switch (Kind()) {
        case ValueKind::kInt:
            value_ = StrToInt32(number, 0);
            break;
        case ValueKind::kDouble:
            value_ = std::strtod(number, nullptr);
            break;
        case ValueKind::kText:
            value_ = CopyText(text);
            break;
        case ValueKind::kUInt:
            value_ = StrToUInt32(number, 0);
            break;
    }
}

void ValueEntry::SetFromNumber(double number) {
    switch (Kind()) {
        case ValueKind::kInt:
            value_ = DoubleToInt32(number);
            break;
        case ValueKind::kDouble:
            value_ = number;
            break;
        case ValueKind::kText:
            value_ = CopyText(FormatText("%.15g", number).c_str());
            break;
        case ValueKind::kUInt:
            value_ = DoubleToUInt32(number);
            break;
    }
}

void ValueEntry::ResetToDefault() {
    switch (Kind()) {
        case ValueKind::kInt:
            value_ = *std::get_if<int32_t>(&definition_.defaultValue);
            break;
        case ValueKind::kDouble:
            value_ = *std::get_if<double>(&definition_.defaultValue);
            break;
        case ValueKind::kText:
            value_ = CopyText(*std::get_if<const char*>(&definition_.defaultValue));
            break;
        case ValueKind::kUInt:
            value_ = *std::get_if<uint32_t>(&definition_.defaultValue);
            break;
    }
}

const char* ValueEntry::AsText() const {
    const auto* text = std::get_if<std::optional<std::string>>(&value_);
    return text != nullptr && text->has_value() ? (*text)->c_str() : nullptr;
}

int32_t ValueEntry::AsInt() const {
    switch (Kind()) {
        case ValueKind::kInt:
            return *std::get_if<int32_t>(&value_);
        case ValueKind::kDouble:
            return DoubleToInt32(AsDouble());
        case ValueKind::kText:
            return AsText() == nullptr ? 0 : StrToInt32(AsText(), 0);
        case ValueKind::kUInt:
            return static_cast<int32_t>(*std::get_if<uint32_t>(&value_));
    }
    return 0;
}

uint32_t ValueEntry::AsUInt() const {
    switch (Kind()) {
        case ValueKind::kInt:
            return static_cast<uint32_t>(*std::get_if<int32_t>(&value_));
        case ValueKind::kDouble:
            return DoubleToUInt32(AsDouble());
        case ValueKind::kText:
            return AsText() == nullptr ? 0 : StrToUInt32(AsText(), 0);
        case ValueKind::kUInt:
            return *std::get_if<uint32_t>(&value_);
    }
    return 0;
}

double ValueEntry::AsDouble() const {
    switch (Kind()) {
        case ValueKind::kInt:
            return *std::get_if<int32_t>(&value_);
        case ValueKind::kDouble:
            return *std::get_if<double>(&value_);
        case ValueKind::kText:
            return AsText() == nullptr ? 0.0 : std::strtod(AsText(), nullptr);
        case ValueKind::kUInt:
            return *std::get_if<uint32_t>(&value_);
    }
    return 0.0;
}

void ValueEntry::Print(Writable* out) const {
    switch (Kind()) {
        case ValueKind::kInt:
            out->Printf("%s = %d\n", Name(), AsInt());
            break;
        case ValueKind::kDouble:
            out->Printf("%s = %f\n", Name(), AsDouble());
            break;
        case ValueKind::kText:
            out->Printf("%s = \"%s\"\n", Name(), AsText() == nullptr ? "(null)" : AsText());
            break;
        case ValueKind::kUInt:
            out->Printf("%s = %u\n", Name(), AsUInt());
            break;
    }
}

void ValueEntry::PrintValue(Writable* out) const {
    switch (Kind()) {
        case ValueKind::kInt:
            out->Printf("%d", AsInt());
            break;
        case ValueKind::kDouble:
            out->Printf("%f", AsDouble());
            break;
        case ValueKind::kText:
            out->Printf("\"%s\"\n", AsText() == nullptr ? "(null)" : AsText());
            break;
        case ValueKind::kUInt:
            out->Printf("%u", AsUInt());
            break;
    }
}

}  // namespace Quenda
