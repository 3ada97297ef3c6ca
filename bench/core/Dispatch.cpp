#include "bench/core/Contest.h"
#include "bench/core/CoreMeasurements.h"
#include "bench/core/DispatchPeers.h"

namespace Bench {

namespace {

constexpr size_t kNumbers[] = {1, 100, 1000};
constexpr size_t kRingCalls = 5000;
constexpr size_t kBurstCalls = 30000;
constexpr int kRounds = 41;
constexpr size_t kRaw = 1;  // in the list of contenders

// Each loop has counters of its own: those of another loop must not wake it.
struct Contestant {
    Contestant(const char* ownName, size_t count, std::unique_ptr<LoopPeer> (*make)(Counters&))
        : name(ownName), counters(count), loop(make(counters)) {}

    std::string name;
    Counters counters;
    std::unique_ptr<LoopPeer> loop;
};

}  // namespace

bool MeasureDispatch() {
    bool allMet = true;
    const auto measure = [&](const char* what, size_t count, size_t calls,
                             void (Counters::*start)(size_t), double limit) {
        Contestant contestants[] = {{"ours", count, QuendaLoop},
                                    {"raw", count, RawLoop},
                                    {"raw with 1 s", count, RawTimedLoop},
                                    {"libevent", count, LibeventLoop},
                                    {"libuv", count, LibuvLoop}};
        std::vector<Contender> contenders;
        for (Contestant& one : contestants) {
            contenders.push_back({one.name, [&one] { one.loop->Run(); },
                                  [&one, start, calls] { (one.counters.*start)(calls); }});
        }
        const Rounds rounds = Compete(contenders, kRounds);
        Row row = Compare(std::string(what) + ", " + std::to_string(count) + " handlers",
                          contenders, rounds, static_cast<double>(calls));
        if (limit > 0) {
            SetBar(row, contenders, rounds, kRaw, limit);
        }
        Print(row);
        allMet = allMet && row.met;
    };
    for (const size_t count : kNumbers) {
        measure("Dispatch: one active", count, kRingCalls, &Counters::StartRing, 1.1);
    }
    for (const size_t count : kNumbers) {
        measure("Dispatch: all ready", count, kBurstCalls, &Counters::StartBurst,
                count == 100 ? 1.6 : 0);
    }
    return allMet;
}

}  // namespace Bench
