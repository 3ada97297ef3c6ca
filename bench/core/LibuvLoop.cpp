#include <uv.h>

#include <vector>

#include "bench/core/DispatchPeers.h"

namespace Bench {

namespace {

class Loop : public LoopPeer {
public:
    explicit Loop(Counters& counters) : handlers_(counters.Fds().size()) {
        (void)uv_loop_init(&loop_);
        for (size_t i = 0; i < handlers_.size(); ++i) {
            handlers_[i].counters = &counters;
            handlers_[i].index = i;
            (void)uv_poll_init(&loop_, &handlers_[i].poll, counters.Fds()[i]);
            handlers_[i].poll.data = &handlers_[i];
            (void)uv_poll_start(&handlers_[i].poll, UV_READABLE, Handle);
        }
    }
    ~Loop() override {
        for (Handler& handler : handlers_) {
            uv_close(reinterpret_cast<uv_handle_t*>(&handler.poll), nullptr);
        }
        (void)uv_run(&loop_, UV_RUN_DEFAULT);
        (void)uv_loop_close(&loop_);
    }

    void Run() override { (void)uv_run(&loop_, UV_RUN_DEFAULT); }

private:
    struct Handler {
        uv_poll_t poll;
        Counters* counters;
        size_t index;
    };

    static void Handle(uv_poll_t* poll, int, int) {
        const Handler& handler = *static_cast<Handler*>(poll->data);
        if (!handler.counters->Handle(handler.index)) {
            uv_stop(poll->loop);
        }
    }

    uv_loop_t loop_{};
    std::vector<Handler> handlers_;
};

}  // namespace

std::unique_ptr<LoopPeer> LibuvLoop(Counters& counters) {
    return std::make_unique<Loop>(counters);
}

}  // namespace Bench
