#include "core/values/ValueList.h"

#include <algorithm>
#include <string>

#include "core/values/ValueHistory.h"

namespace Quenda {

ValueList::ValueList(const std::vector<ValueDefinition>& definitions)
    : values_(definitions.begin(), definitions.end()) {}

ValueList::~ValueList() = default;

void ValueList::Reset() {
    for (ValueEntry& entry : values_) {
        entry.ResetToDefault();
    }
}

bool ValueList::Load(const OptionsNode& options) {
    if (!options.IsObject()) {
        return false;
    }
    for (ValueEntry& entry : values_) {
        const std::string text = options.GetMemberString(entry.Name());
        if (text.empty()) {
            entry.ResetToDefault();
        } else {
            entry.SetFromText(text.c_str());
        }
    }
    return true;
}

ValueEntry* ValueList::Find(const char* name) {
    if (name == nullptr) {
        return nullptr;
    }
    const auto found = std::find_if(values_.begin(), values_.end(), ValueFinder(name));
    return found == values_.end() ? nullptr : &*found;
}

void ValueList::EnableHistory(bool enable) {
    historyEnabled_ = enable;
    if (!enable) {
        history_.reset();
    }
}

void ValueList::Command(Writable* out, int argc, const char* const* argv) {
    const std::string command = argc > 0 ? argv[0] : "";
    const auto is = [&](const char* word, int words) { return command == word && argc == words; };
    if (argc == 0 || is("show", 1)) {
        Show(out);
    } else if (is("reset", 1)) {
        Reset();
    } else if (is("show", 2) || is("reset", 2) || is("set", 3)) {
        CommandOne(out, command, argv[1], argv[argc - 1]);
    } else if (command == "history" && historyEnabled_) {
        RunHistory(out, argc - 1, argv + 1);
    } else {
        out->Puts("Usage: show [key] | reset [key] | set {key} {value}");
        out->Puts(historyEnabled_ ? " | history\n" : "\n");
    }
}

void ValueList::Show(Writable* out) const {
    if (values_.empty()) {
        out->Puts("No values\n");
    }
    for (const ValueEntry& entry : values_) {
        entry.Print(out);
    }
}

void ValueList::CommandOne(Writable* out, const std::string& command, const char* name,
                           const char* text) {
    ValueEntry* entry = Find(name);
    if (entry == nullptr) {
        out->Printf("Cannot find value \"%s\"\n", name);
    } else if (command == "show") {
        entry->Print(out);
    } else if (command == "reset") {
        entry->ResetToDefault();
    } else {
        entry->SetFromText(text);
    }
}

void ValueList::RunHistory(Writable* out, int argc, const char* const* argv) {
    if (history_ == nullptr) {
        history_ = std::make_unique<History>(*this);
        out->Puts("Created value history logger.\n");
    }
    history_->Command(out, argc, argv);
}

}  // namespace Quenda
