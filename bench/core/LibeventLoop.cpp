#include <event2/event.h>
#include <event2/event_struct.h>

#include <vector>

#include "bench/core/DispatchPeers.h"

namespace Bench {

namespace {

class Loop : public LoopPeer {
public:
    explicit Loop(Counters& counters) : base_(event_base_new()), handlers_(counters.Fds().size()) {
        for (size_t i = 0; i < handlers_.size(); ++i) {
            handlers_[i].counters = &counters;
            handlers_[i].base = base_;
            handlers_[i].index = i;
            (void)event_assign(&handlers_[i].event, base_, counters.Fds()[i], EV_READ | EV_PERSIST,
                               Handle, &handlers_[i]);
            (void)event_add(&handlers_[i].event, nullptr);
        }
    }
    ~Loop() override {
        for (Handler& handler : handlers_) {
            (void)event_del(&handler.event);
        }
        event_base_free(base_);
    }

    void Run() override { (void)event_base_loop(base_, 0); }

private:
    struct Handler {
        ::event event;
        event_base* base;
        Counters* counters;
        size_t index;
    };

    static void Handle(evutil_socket_t, short, void* argument) {
        const Handler& handler = *static_cast<Handler*>(argument);
        if (!handler.counters->Handle(handler.index)) {
            (void)event_base_loopbreak(handler.base);
        }
    }

    event_base* base_;
    std::vector<Handler> handlers_;
};

}  // namespace

std::unique_ptr<LoopPeer> LibeventLoop(Counters& counters) {
    return std::make_unique<Loop>(counters);
}

}  // namespace Bench
