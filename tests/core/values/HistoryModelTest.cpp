// Random samples of a list's history, and the simplest model: a deque of numbers with times. The
// transcripts hold the other tables.
#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <random>

#include "core/output/StringWritable.h"
#include "core/text/FormatText.h"
#include "core/values/ValueHistory.h"

using namespace Quenda;

namespace {

std::string Row(int64_t timeUs, const std::string& cell) {
    const int ms = static_cast<int>((timeUs + 500) / 1000);
    return FormatText("    1970-01-01 %02d:%02d:%02d.%03d , %12s \n", ms / 3600000, ms / 60000 % 60,
                      ms / 1000 % 60, ms % 1000, cell.c_str());
}

// The rows of the table of changes per second.
std::string Rates(ValueList::History& history) {
    StringWritable out;
    const char* const words[] = {"rate", "n"};
    history.Command(&out, 2, words);
    return out.Text().substr(out.Text().find('\n') + 1);
}

TEST(ValueListTest, WithoutValuesSaysSo) {
    StringWritable out;
    ValueList({}).Command(&out, 0, nullptr);
    EXPECT_EQ(out.Text(), "No values\n");
}

TEST(HistoryModelTest, RatesAreThoseOfADeque) {
    setenv("TZ", "UTC", 1);
    std::mt19937 random{1};
    ValueList list({ValueDefinition::UInt("n", 0)});
    ValueList::History history(list);
    int64_t timeUs = 1000000;
    std::deque<std::pair<int64_t, double>> samples{{timeUs, 0}};
    history.TakeSample({1, 0});
    for (int round = 0; round < 2000 && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE(FormatText("round %d, at %d us", round, static_cast<int>(timeUs)));
        // Sometimes at the same time or before it: the wall clock may be set back.
        timeUs +=
            random() % 9 == 0 ? -500000 : static_cast<int64_t>(random() % 4 * (random() % 900000));
        const auto number = std::to_string(random() % 1000);
        samples.emplace_back(timeUs, std::stod(number));
        list.Find("n")->SetFromText(number.c_str());
        history.TakeSample({timeUs / 1000000, static_cast<int32_t>(timeUs % 1000000)});
        if (samples.size() > 10) {
            samples.pop_front();
        }
        std::string rates;
        for (size_t i = 1; i < samples.size(); ++i) {
            const auto& [us, value] = samples[i];
            const double seconds = static_cast<double>(us - samples[i - 1].first) / 1e6;
            const double change = value - samples[i - 1].second;
            rates += Row(us, seconds > 0 ? FormatText("%.2f", change / seconds) : "no time");
        }
        EXPECT_EQ(Rates(history), rates);
    }
}

}  // namespace
