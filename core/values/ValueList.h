#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/options/OptionsNode.h"
#include "core/output/Writable.h"
#include "core/values/ValueEntry.h"

namespace Quenda {

// A table of named values, in the order of their definitions, with a text console. A component
// loads its options into it.
class ValueList {
public:
    // Keeps time-stamped copies of the list (core/values/ValueHistory.h).
    class History;

    // Tells whether an entry has exactly this name, which is not owned.
    class ValueFinder {
    public:
        explicit ValueFinder(const char* name) : name_(name) {}
        bool operator()(const ValueEntry& entry) const {
            return std::strcmp(entry.Name(), name_) == 0;
        }

    private:
        const char* name_;
    };

    // History is disabled at first.
    explicit ValueList(const std::vector<ValueDefinition>& definitions);
    ValueList(const ValueList&) = delete;
    ValueList& operator=(const ValueList&) = delete;
    ~ValueList();

    void Reset();
    // Sets each entry from the text of the option of its name, or to its default when the option is
    // missing or empty. When the options are not an object, returns false and changes nothing. Null
    // counts as an object without members.
    bool Load(const OptionsNode& options);

    // The first entry of that name, or null. The name may be null.
    ValueEntry* Find(const char* name);
    // The value of the definition at this index, which must exist.
    const ValueEntry& At(size_t index) const { return values_[index]; }
    const std::vector<ValueEntry>& Values() const { return values_; }

    // Disabling destroys the samples and stops their timer. After enabling, the console's first
    // "history" creates a history.
    void EnableHistory(bool enable);

    // Runs a console command: "show", "reset", "set" or "history", in this spelling, with its
    // arguments. Without a command it prints all entries; any other prints the usage.
    void Command(Writable* out, int argc, const char* const* argv);

private:
    void Show(Writable* out) const;
    // Runs "show", "reset" or "set" for one entry. Only "set" uses the text.
    void CommandOne(Writable* out, const std::string& command, const char* name, const char* text);
    void RunHistory(Writable* out, int argc, const char* const* argv);

    std::vector<ValueEntry> values_;
    bool historyEnabled_ = false;
    std::unique_ptr<History> history_;
};

}  // namespace Quenda
