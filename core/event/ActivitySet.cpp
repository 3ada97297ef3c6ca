#include "core/event/ActivitySet.h"

#include <cstdio>
#include <utility>

#include "core/output/StringWritable.h"

namespace Quenda {

ActivityHold::ActivityHold(Callback* callback, SharedText name)
    : callback_(callback), name_(std::move(name)) {}

ActivityHold::ActivityHold(CallbackHandle callback, SharedText name)
    : callback_(callback.Get()), kept_(std::move(callback)), name_(std::move(name)) {}

ActivityHold::~ActivityHold() {
    if (links.list != nullptr) {
        links.list->Remove(this);
    }
}

void ActivityHold::Print() const {
    printf(" Print name %s   - ", Name());
}

ActivitySet::ActivitySet() : current_(&lists_[0]), next_(&lists_[1]) {}

ActivitySet::~ActivitySet() {
    RemoveAll(*current_);
    RemoveAll(*next_);
}

bool ActivitySet::Add(ActivityHold* hold) {
    if (hold == nullptr) {
        return false;
    }
    if (hold->links.list == nullptr) {
        next_->Append(hold);
    }
    return true;
}

bool ActivitySet::Remove(ActivityHold* hold) {
    if (hold == nullptr || hold->links.list == nullptr) {
        return false;
    }
    hold->links.list->Remove(hold);
    return true;
}

void ActivitySet::RemoveAll(List& list) {
    while (!list.IsEmpty()) {
        list.Remove(list.Head());
    }
}

bool ActivitySet::Run(int argument) {
    std::swap(current_, next_);
    bool result = true;
    while (!current_->IsEmpty()) {
        ActivityHold* const hold = current_->Head();
        // The callback must survive its own call, even when that destroys the hold.
        const ActivityHold::CallbackHandle kept = hold->kept_;
        result = hold->callback_ == nullptr || hold->callback_->Invoke(argument);
        // Only the address is compared: the callback may have destroyed the hold.
        if (current_->Head() != hold) {
            return result;
        }
        current_->Remove(hold);
        if (!result) {
            next_->Append(hold);
        }
    }
    return result;
}

void ActivitySet::PrintLists(Writable* out, const char* noun, const char* indent) const {
    const auto print = [&](const char* which, const List& list) {
        out->Printf("%s %s: %d\n", which, noun, static_cast<int>(list.Count()));
        for (ActivityHold* hold = list.Head(); hold != nullptr; hold = list.After(hold)) {
            out->Printf("%s%p - %s\n", indent, static_cast<void*>(hold), hold->Name());
        }
    };
    print("Current", *current_);
    print("New", *next_);
}

SharedText ActivitySet::Text() const {
    StringWritable text;
    PrintLists(&text, "activities", " ");
    return text.Text();
}

void ActivitySet::Dump(Writable* out) const {
    PrintLists(out, "Activities", "");
}

}  // namespace Quenda
