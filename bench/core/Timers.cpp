#include <algorithm>
#include <array>
#include <chrono>
#include <random>

#include "bench/core/Contest.h"
#include "bench/core/CoreMeasurements.h"
#include "bench/core/TimerPeers.h"

namespace Bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kNumbers[] = {1, 100, 10000, 100000};
constexpr size_t kOperations = 10000;  // of arming in one round
constexpr int kRearmRounds = 41;
constexpr size_t kLibevent = 1;  // in the list of contenders
constexpr size_t kLibuv = 2;
constexpr size_t kMultimap = 3;

// Waits far from now, so that none of these timers is ever due.
std::vector<uint32_t> LongWaits(size_t count) {
    std::mt19937 random(1);
    std::uniform_int_distribution<uint32_t> wait(kPeriodMs, 2 * kPeriodMs);
    std::vector<uint32_t> waits(count);
    std::generate(waits.begin(), waits.end(), [&] { return wait(random); });
    return waits;
}

// In the order of the contenders.
struct Sets {
    Sets(size_t count, TimerKind kind) {
        sets[0] = QuendaTimers(count, kind);
        sets[kLibevent] = LibeventTimers(count, kind);
        sets[kLibuv] = LibuvTimers(count, kind);
        sets[kMultimap] = MultimapTimers(count, kind);
    }

    std::unique_ptr<TimerSet> sets[4];
};

template <typename Run>
std::vector<Contender> Contenders(Sets& sets, Run run, std::function<void(TimerSet&)> prepare) {
    static const char* const names[] = {"ours", "libevent", "libuv", "bare multimap"};
    std::vector<Contender> contenders;
    for (size_t i = 0; i < std::size(names); ++i) {
        TimerSet& set = *sets.sets[i];
        contenders.push_back({names[i], [&set, run] { run(set); },
                              [&set, prepare] {
                                  if (prepare) {
                                      prepare(set);
                                  }
                              }});
    }
    return contenders;
}

void ArmAll(Sets& sets, const std::vector<uint32_t>& waits, size_t count) {
    for (const auto& set : sets.sets) {
        set->Refresh();
        for (size_t i = 0; i < count; ++i) {
            set->Arm(i, waits[i]);
        }
    }
}

std::string Among(const char* what, size_t count) {
    return std::string(what) + ", N = " + std::to_string(count);
}

class TimerRows {
public:
    // Of one operation, in seconds: ours and the peers', in the order of the contenders.
    using Times = std::array<double, 4>;

    bool AllMet() const { return allMet_; }

    Times ArmAndCancel(size_t count) {
        const auto waits = LongWaits(count + kOperations);
        Sets sets(count + 1, TimerKind::kOnce);
        ArmAll(sets, waits, count);
        const auto run = [&](TimerSet& set) {
            for (size_t i = 0; i < kOperations; ++i) {
                set.Arm(count, waits[count + i]);
                set.Cancel(count);
            }
        };
        return Measure(Among("Timers: arm and cancel one beside N", count),
                       Contenders(sets, run, nullptr), 41, kOperations, 0);
    }

    // A timer at random, to a time at random: the worst case for an ordered queue. No round
    // repeats another one, or most timers would be armed for the time that they have already.
    Times RearmAnywhere(size_t count) {
        const auto waits = LongWaits(count + (kRearmRounds + 1) * kOperations);
        Sets sets(count, TimerKind::kOnce);
        ArmAll(sets, waits, count);
        const auto run = [&](TimerSet& set) {
            for (size_t i = 0; i < kOperations; ++i, ++set.rearmed) {
                // A wait is as random a number as any.
                set.Arm(waits[set.rearmed] % count, waits[count + set.rearmed]);
            }
        };
        return Measure(Among("Timers: re-arm any one of N, to any time", count),
                       Contenders(sets, run, nullptr), kRearmRounds, kOperations, kLibuv);
    }

    // What periodic timers and time-outs do that are put off: the first becomes the last.
    void RearmPeriodOn(size_t count) {
        Sets sets(count, TimerKind::kOnce);
        for (const auto& set : sets.sets) {
            set->Refresh();
        }
        const auto run = [count](TimerSet& set) {
            for (size_t i = 0; i < std::max(kOperations, count); ++i) {
                set.Arm(set.rearmed % count, kPeriodMs + static_cast<uint32_t>(set.rearmed));
                ++set.rearmed;
            }
        };
        (void)Measure(Among("Timers: re-arm the first of N, one period on", count),
                      Contenders(sets, run, nullptr), 41,
                      static_cast<double>(std::max(kOperations, count)), kLibuv);
    }

    Times Fire(size_t count, TimerKind kind) {
        const auto waits = LongWaits(count);
        const uint32_t dueWithinMs = count > 100 ? 20 : 2;
        const int rounds = count > 10000 ? 15 : count > 100 ? 31 : 151;
        Sets sets(count, kind);
        const auto prepare = [&](TimerSet& set) {
            set.fired = 0;
            set.Refresh();
            for (size_t i = 0; i < count; ++i) {
                set.Arm(i, waits[i] % dueWithinMs);
            }
            // Without sleeping: that would leave the caches to others.
            const Clock::time_point due = Clock::now() + std::chrono::milliseconds(dueWithinMs + 5);
            while (Clock::now() < due) {
            }
        };
        const auto run = [&](TimerSet& set) {
            set.Turn();
            if (set.fired != count) {
                Fail("a pass fired " + std::to_string(set.fired) + " timers");
            }
        };
        const char* const what = kind == TimerKind::kOnce ? "Timers: fire N due in one pass, each"
                                                          : "Timers: fire and re-arm N due, each";
        return Measure(Among(what, count), Contenders(sets, run, prepare), rounds,
                       static_cast<double>(count), kLibevent);
    }

    // Measures with each number, and how the time grows from 100 to 100,000 timers.
    template <typename MeasureOne>
    void Growth(const char* what, const MeasureOne& measure) {
        Times times[std::size(kNumbers)];
        std::transform(std::begin(kNumbers), std::end(kNumbers), times, measure);
        const auto growth = [&times](size_t i) { return times[3][i] / times[1][i]; };
        const Row row = {std::string("Timers: growth of ") + what + ", 100 to 100,000 timers",
                         Fixed(growth(0), 1) + " times",
                         "a logarithm 2.5, libevent " + Fixed(growth(kLibevent), 1) + ", libuv " +
                             Fixed(growth(kLibuv), 1) + ", bare multimap " +
                             Fixed(growth(kMultimap), 1),
                         "at most twice a logarithm, with the caches' part", growth(0) <= 5.0};
        Print(row);
        allMet_ = allMet_ && row.met;
    }

private:
    Times Measure(const std::string& figure, const std::vector<Contender>& contenders, int rounds,
                  double operations, size_t beside) {
        const Rounds times = Compete(contenders, rounds);
        Row row = Compare(figure, contenders, times, operations);
        if (beside != 0) {
            SetBar(row, contenders, times, beside, 1.0);
        }
        Print(row);
        allMet_ = allMet_ && row.met;
        return {times.Median(0) / operations, times.Median(kLibevent) / operations,
                times.Median(kLibuv) / operations, times.Median(kMultimap) / operations};
    }

    bool allMet_ = true;
};

}  // namespace

bool MeasureTimers() {
    TimerRows rows;
    rows.Growth("arming", [&](size_t count) { return rows.ArmAndCancel(count); });
    rows.Growth("re-arming anywhere", [&](size_t count) { return rows.RearmAnywhere(count); });
    for (const size_t count : kNumbers) {
        rows.RearmPeriodOn(count);
    }
    rows.Growth("firing", [&](size_t count) { return rows.Fire(count, TimerKind::kOnce); });
    for (const size_t count : kNumbers) {
        (void)rows.Fire(count, TimerKind::kPeriodic);
    }
    return rows.AllMet();
}

}  // namespace Bench
