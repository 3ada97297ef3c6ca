// A constant text that may be absent and that copies share: the name of a timer or a handler, a
// formatted time, the error of an options node.
#pragma once

#include <memory>
#include <string>
#include <utility>

namespace Quenda {

class SharedText {
public:
    // Absent.
    SharedText() = default;
    // A copy of the text; null makes an absent text.
    SharedText(const char* text)  // NOLINT(google-explicit-constructor): a name is written as "..."
        : text_(text == nullptr ? nullptr : std::make_shared<const std::string>(text)) {}
    SharedText(std::string text)  // NOLINT(google-explicit-constructor)
        : text_(std::make_shared<const std::string>(std::move(text))) {}

    bool IsAbsent() const { return text_ == nullptr; }
    // True for an absent text, too.
    bool IsEmpty() const { return text_ == nullptr || text_->empty(); }
    // "" for an absent text. Valid as long as any copy exists.
    const char* Get() const { return text_ == nullptr ? "" : text_->c_str(); }

private:
    std::shared_ptr<const std::string> text_;
};

}  // namespace Quenda
