#include "bench/core/Contest.h"

#include <sys/resource.h>

#include <algorithm>
#include <ctime>

namespace Bench {

namespace {

double MedianOf(std::vector<double> numbers) {
    const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
    std::nth_element(numbers.begin(), middle, numbers.end());
    return *middle;
}

double CpuOf(int who) {
    rusage usage{};
    (void)getrusage(who, &usage);  // cannot fail with valid arguments
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

double Rounds::Median(size_t contender) const {
    return MedianOf(times_[contender]);
}

double Rounds::Ratio(size_t other) const {
    std::vector<double> ratios;
    for (size_t i = 0; i < times_[other].size(); ++i) {
        ratios.push_back(times_[0][i] / times_[other][i]);
    }
    return MedianOf(ratios);
}

double CpuOfProcess() {
    timespec time{};
    (void)clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);  // cannot fail
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double CpuWithChildren() {
    return CpuOf(RUSAGE_SELF) + CpuOf(RUSAGE_CHILDREN);
}

Rounds Compete(const std::vector<Contender>& contenders, int rounds, double (*clock)()) {
    std::vector<std::vector<double>> times(contenders.size());
    for (int round = -1; round < rounds; ++round) {
        for (size_t turn = 0; turn < contenders.size(); ++turn) {
            // Nobody always follows the same one.
            const size_t i = (turn + static_cast<size_t>(round + 1)) % contenders.size();
            if (contenders[i].prepare) {
                contenders[i].prepare();
            }
            const double start = clock();
            contenders[i].run();
            const double end = clock();
            if (round >= 0) {
                times[i].push_back(end - start);
            }
        }
    }
    return Rounds(std::move(times));
}

Row Compare(const std::string& figure, const std::vector<Contender>& contenders,
            const Rounds& rounds, double count) {
    Row row;
    row.figure = figure;
    row.measured = Duration(rounds.Median(0) / count);
    for (size_t i = 1; i < contenders.size(); ++i) {
        row.floor += (i == 1 ? "" : ", ") + contenders[i].name + " " +
                     Duration(rounds.Median(i) / count) + " (" + Fixed(rounds.Ratio(i), 2) + ")";
    }
    row.bar = "-";
    row.met = true;
    return row;
}

void SetBar(Row& row, const std::vector<Contender>& contenders, const Rounds& rounds, size_t other,
            double limit) {
    row.bar = "at most " + Fixed(limit, limit == 1.0 ? 0 : 1) + " times " + contenders[other].name;
    row.met = rounds.Ratio(other) <= limit;
}

std::string Duration(double seconds) {
    if (seconds < 1e-6) {
        return Fixed(seconds * 1e9, 0) + " ns";
    }
    return seconds < 1e-3 ? Fixed(seconds * 1e6, 2) + " µs" : Fixed(seconds * 1e3, 2) + " ms";
}

}  // namespace Bench
