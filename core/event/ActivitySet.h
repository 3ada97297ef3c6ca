// Deferred work that the event loop runs on its next pass, without waiting for a descriptor or
// a timer.
#pragma once

#include "core/callback/Callback.h"
#include "core/event/Dlist.h"
#include "core/text/SharedText.h"

namespace Quenda {

class ActivitySet;
class Writable;

// One piece of deferred work. It belongs to whoever made it, and takes itself out of its set
// when it is destroyed.
class ActivityHold {
public:
    // True when the work is done; false to be called again on the next pass.
    using Callback = CallbackBuffer<bool(int)>;
    using CallbackHandle = CallbackRef<bool(int)>;

    // The callback is not owned, must outlive the hold, and may be null: such a hold is done as
    // soon as it is run.
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
    CallbackHandle kept_;  // of the same; empty for a callback that is not owned
    SharedText name_;
    ActivitySet* owner_ = nullptr;
};

// The holds of one event loop: those of the pass that runs, and those that wait for the next.
class ActivitySet {
public:
    ActivitySet();
    ActivitySet(const ActivitySet&) = delete;
    ActivitySet& operator=(const ActivitySet&) = delete;
    // Takes every hold out; the holds live on.
    ~ActivitySet();

    // Queues the hold for the next pass. True also for one that is queued already; false for null.
    bool Add(ActivityHold* hold);
    // False for null and for a hold that is in no list.
    bool Remove(ActivityHold* hold);
    bool HasActivities() const { return !current_->IsEmpty() || !next_->IsEmpty(); }

    // One pass over the holds queued so far, in the order in which they were added. Work added
    // meanwhile waits for the next pass. A callback that removes its own hold, or destroys it,
    // ends the pass; the holds not yet run stay queued and run in a later pass.
    // Returns what the last callback returned, true when there was none.
    bool Run(int argument);

    // The two headings differ in their letters on purpose: tools tell the forms apart by them.
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
