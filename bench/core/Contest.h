// Compares the CPU times of several ways to do the same work. They take turns, so that whatever
// else the machine does meets all of them, and medians over many rounds leave out what it disturbs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/Table.h"

namespace Bench {

struct Contender {
    std::string name;
    std::function<void()> run;      // what is timed
    std::function<void()> prepare;  // comes before it, untimed; may be empty
};

// The times of all rounds, in seconds. The first contender is ours.
class Rounds {
public:
    explicit Rounds(std::vector<std::vector<double>> times) : times_(std::move(times)) {}

    double Median(size_t contender) const;
    // How many times as long as the other one ours takes: the median of the rounds' ratios.
    double Ratio(size_t other) const;

private:
    std::vector<std::vector<double>> times_;  // one row for each contender
};

// Seconds of CPU that this process has used, with or without its ended children.
double CpuOfProcess();
double CpuWithChildren();

// One round more, not counted, goes ahead of the others.
Rounds Compete(const std::vector<Contender>& contenders, int rounds,
               double (*clock)() = CpuOfProcess);

// What is shown of a contest: our time and the others', each for one of `count` operations.
Row Compare(const std::string& figure, const std::vector<Contender>& contenders,
            const Rounds& rounds, double count);
// Sets a bar: at most `limit` times the other contender.
void SetBar(Row& row, const std::vector<Contender>& contenders, const Rounds& rounds, size_t other,
            double limit);

// The time in the unit that suits it.
std::string Duration(double seconds);

}  // namespace Bench
