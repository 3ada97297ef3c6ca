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

// An ordered table of named values, into which a component loads its options, with a text
// console. The order is that of the definitions.
class ValueList {
public:
    // Time-stamped copies of the list (core/values/ValueHistory.h).
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
    // Gives each entry the text of the option of its name, or its default when there is none or
    // an empty one. False, with all entries as they were, when the options are no object; null
    // counts as one without members.
    bool Load(const OptionsNode& options);

    // The first entry of that name, or null. The name may be null.
    ValueEntry* Find(const char* name);
    // By the order of the definitions. The index must be that of a value.
    const ValueEntry& At(size_t index) const { return values_[index]; }
    const std::vector<ValueEntry>& Values() const { return values_; }

    // Disabling destroys the samples and stops their timer. Enabling prepares for a history,
    // which the console's first "history" creates.
    void EnableHistory(bool enable);

    // Runs a console command: "show", "reset", "set" or "history" with their arguments, in this
    // spelling. Anything else prints the usage, no arguments all entries.
    void Command(Writable* out, int argc, const char* const* argv);

private:
    void Show(Writable* out) const;
    // "show", "reset" or "set" for one entry; only the last takes the text.
    void CommandOne(Writable* out, const std::string& command, const char* name, const char* text);
    void RunHistory(Writable* out, int argc, const char* const* argv);

    std::vector<ValueEntry> values_;
    bool historyEnabled_ = false;
    std::unique_ptr<History> history_;
};

}  // namespace Quenda
