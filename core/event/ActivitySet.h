// Deferred work. The event loop runs it on its next pass, without waiting for a descriptor or a
// timer.
#pragma once

#include "core/callback/Callback.h"
#include "core/event/Dlist.h"
#include "core/text/SharedText.h"

namespace Quenda {

class Writable;

// One piece of deferred work. The set does not own it. When it is destroyed, it leaves its set.
class ActivityHold {
public:
    // True when the work is done; false to be called again on the next pass.
    using Callback = CallbackBuffer<bool(int)>;
    using CallbackHandle = CallbackRef<bool(int)>;

    // The callback is not owned and must outlive the hold. It may be null: running the hold then
    // does nothing and counts as done.
    explicit ActivityHold(Callback* callback, SharedText name = SharedText());
    // Keeps a reference to the callback.
    explicit ActivityHold(CallbackHandle callback, SharedText name = SharedText());
    ActivityHold(const ActivityHold&) = delete;
    ActivityHold& operator=(const ActivityHold&) = delete;
    ~ActivityHold();

    const char* Name() const { return name_.Get(); }
    // Prints the name to standard output.
    void Print() const;

    DlistLinks<ActivityHold*> links;

private:
    friend class ActivitySet;

    Callback* callback_;
    CallbackHandle kept_;  // keeps `callback_` alive; empty when that is not owned
    SharedText name_;
};

// The holds of one event loop, in two lists: the running pass and the next one.
class ActivitySet {
public:
    ActivitySet();
    ActivitySet(const ActivitySet&) = delete;
    ActivitySet& operator=(const ActivitySet&) = delete;
    // Takes every hold out, but destroys none.
    ~ActivitySet();

    // Queues the hold for the next pass. True also when it is queued already; false for null.
    bool Add(ActivityHold* hold);
    // False for null and for a hold that is in no list.
    bool Remove(ActivityHold* hold);
    bool HasActivities() const { return !current_->IsEmpty() || !next_->IsEmpty(); }

    // Runs the queued holds once, in the order in which they were added. Holds added meanwhile wait
    // for the next pass. A callback that removes or destroys its own hold ends the pass, on
    // purpose: the holds that have not run stay queued for a later one. Returns the last callback's
    // result, or true without one.
    bool Run(int argument);

    // The headings say "activities" and "Activities", on purpose: tools tell the two forms apart.
    SharedText Text() const;
    void Dump(Writable* out) const;

private:
    using List = Dlist<ActivityHold*>;

    static void RemoveAll(List& list);
    void PrintLists(Writable* out, const char* noun, const char* indent) const;

    List lists_[2];
    List* current_;
    List* next_;
};

}  // namespace Quenda
