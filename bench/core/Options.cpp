#include <array>

#include "bench/core/Contest.h"
#include "bench/core/CoreMeasurements.h"
#include "bench/core/PlainOptions.h"
#include "core/options/OptionsNodeEdit.h"

namespace Bench {

namespace {

constexpr uint32_t kBranches = 10;     // at each of three levels: 1,000 leaves
constexpr uint32_t kAllLevels = 1000;  // of an overlay
constexpr int kRounds = 61;
constexpr double kLimit = 1.2;

std::string Name(const char* stem, uint32_t number) {
    return stem + std::to_string(number);
}

// Leaves of each kind, as a terminal's options have them. `change` makes them differ.
Json::Value Leaf(uint32_t number, uint32_t change) {
    switch (number % 4) {
        case 0:
            return Json::Value(number + change);
        case 1:
            return Json::Value("10.0." + std::to_string(number) + "." + std::to_string(change));
        case 2:
            return Json::Value((number + change) % 8 == 2);
        default:
            return Json::Value(0.25 * (number + change));
    }
}

Json::Value Document(uint32_t change) {
    Json::Value document(Json::objectValue);
    for (uint32_t i = 0; i < kBranches; ++i) {
        for (uint32_t j = 0; j < kBranches; ++j) {
            for (uint32_t k = 0; k < kBranches; ++k) {
                document[Name("interface", i)][Name("section", j)][Name("option", k)] =
                    Leaf(i * 100 + j * 10 + k, change);
            }
        }
    }
    return document;
}

Json::Value ArrayDocument(uint32_t count, uint32_t change) {
    Json::Value document(Json::objectValue);
    for (uint32_t i = 0; i < count; ++i) {
        Json::Value& element = document["list"][i];
        element["id"] = i;
        element["value"] = i + change;
    }
    return document;
}

class OptionsRows {
public:
    bool AllMet() const { return allMet_; }

    // Both change the destination to and fro, each its own.
    template <typename Ours, typename Plain>
    void Change(const std::string& figure, const Json::Value (&sources)[2], int times,
                const Ours& ours, const Plain& plain) {
        Json::Value destinations[] = {sources[1], sources[1]};
        const auto repeat = [&](const auto& change, Json::Value& destination) {
            for (int i = 0; i < times; ++i) {
                change(destination, sources[i % 2]);
            }
        };
        Measure(
            figure, times, [&] { repeat(ours, destinations[0]); },
            [&] { repeat(plain, destinations[1]); });
        if (destinations[0] != destinations[1]) {
            Fail("different outcomes: " + figure);
        }
    }

    double Measure(const std::string& figure, double times, std::function<void()> ours,
                   std::function<void()> plain) {
        const std::vector<Contender> contenders = {{"ours", std::move(ours), nullptr},
                                                   {"plain", std::move(plain), nullptr}};
        const Rounds rounds = Compete(contenders, kRounds);
        Row row = Compare(figure, contenders, rounds, times);
        SetBar(row, contenders, rounds, 1, kLimit);
        Print(row);
        allMet_ = allMet_ && row.met;
        return rounds.Median(0) / times;
    }

private:
    bool allMet_ = true;
};

void Overlay(Json::Value& destination, const Json::Value& source) {
    Quenda::OptionsNodeEdit edit(&destination, nullptr);
    (void)edit.Overlay(Quenda::OptionsNode(&source), kAllLevels);
}

void Merge(Json::Value& destination, const Json::Value& source, const Json::Value& ids) {
    Quenda::OptionsNodeEdit edit(&destination, nullptr);
    if (!edit.Merge(Quenda::OptionsNode(&source), Quenda::OptionsNode(&ids))) {
        Fail(edit.Error().Get());
    }
}

void MeasureMerge(OptionsRows& rows, const std::string& figure, const Json::Value (&sources)[2],
                  const Json::Value& ids, int times) {
    rows.Change(
        figure, sources, times,
        [&](Json::Value& destination, const Json::Value& source) {
            Merge(destination, source, ids);
        },
        [&](Json::Value& destination, const Json::Value& source) {
            if (!PlainMerge(destination, source, ids).empty()) {
                Fail("the plain merge has failed");
            }
        });
}

void MeasureLookup(OptionsRows& rows, const Json::Value& document) {
    constexpr int kTimes = 1000;
    std::vector<std::array<std::string, 3>> names;
    for (uint32_t i = 0; i < kBranches; ++i) {
        names.push_back({Name("interface", i), Name("section", i * 3 % kBranches),
                         Name("option", i * 7 % kBranches)});
    }
    std::vector<Quenda::OptionsPath> paths;
    for (const auto& [first, second, third] : names) {
        paths.push_back({first.c_str(), second.c_str(), third.c_str()});
    }
    const Quenda::OptionsNode node(&document);
    const auto ours = [&] {
        for (int i = 0; i < kTimes; ++i) {
            const Quenda::OptionsPath& path = paths[static_cast<size_t>(i) % kBranches];
            if (node.GetNode(path).Value().isNull()) {
                Fail("nothing down the path");
            }
        }
    };
    const auto plain = [&] {
        for (int i = 0; i < kTimes; ++i) {
            const Quenda::OptionsPath& path = paths[static_cast<size_t>(i) % kBranches];
            const Json::Value* const value = PlainLookup(document, path);
            if (value == nullptr || value->isNull()) {
                Fail("nothing down the path");
            }
        }
    };
    (void)rows.Measure("Options: lookup of a path of 3 names", kTimes, ours, plain);
}

}  // namespace

bool MeasureOptions() {
    OptionsRows rows;
    const Json::Value sources[] = {Document(1), Document(2)};
    rows.Change("Options: overlay of 1,000 leaves", sources, 4, Overlay, PlainOverlay);
    MeasureMerge(rows, "Options: merge of 1,000 leaves", sources, Json::Value(), 4);
    MeasureLookup(rows, sources[0]);
    const Quenda::OptionsNode node(&sources[0]);
    const std::string text = PlainText(sources[0]);
    (void)rows.Measure(
        "Options: compact text of 1,000 leaves", 1,
        [&] {
            if (node.GetCompactText().Get() != text) {
                Fail("different texts");
            }
        },
        [&] {
            if (PlainText(sources[0]) != text) {
                Fail("different texts");
            }
        });
    for (const uint32_t count : {10U, 100U, 1000U}) {
        const Json::Value arrays[] = {ArrayDocument(count, 1), ArrayDocument(count, 2)};
        Json::Value onlyId(Json::objectValue);
        onlyId["list"][0U]["id"] = 0;
        MeasureMerge(rows,
                     "Options: merge of arrays by IDs, " + std::to_string(count) + " elements",
                     arrays, onlyId, count < 1000 ? 20 : 2);
    }
    return rows.AllMet();
}

}  // namespace Bench
