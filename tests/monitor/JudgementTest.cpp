#include "monitor/Judgement.h"

#include <gtest/gtest.h>

#include <string>

using namespace Monitor;

namespace {

constexpr HealthFacts kHealthy = {42, true, false, false};
constexpr HealthFacts kAbsent = {0, true, false, false};

constexpr OptionsType kNormal = OptionsType::kNormal;
constexpr OptionsType kBackup = OptionsType::kBackup;
constexpr OptionsType kFactory = OptionsType::kFactory;
constexpr uint32_t kMost = UINT32_MAX;

TEST(JudgementTest, StateComesFromTheFirstFactThatDecides) {
    const std::pair<HealthFacts, KeldraState> cases[] = {
        {{-1, false, true, true}, KeldraState::kUnknown},
        {{0, false, true, true}, KeldraState::kNotRunning},
        {{1, false, false, false}, KeldraState::kInErrorState},  // no heartbeat file
        {{1, true, true, false}, KeldraState::kInErrorState},    // the count says so
        {{1, true, true, true}, KeldraState::kInErrorState},
        {{1, true, false, true}, KeldraState::kMissedHeartbeat},
        {{1, true, false, false}, KeldraState::kUpAndOkay},
    };
    for (const auto& [facts, state] : cases) {
        EXPECT_EQ(ClassifyKeldra(facts), state) << facts.keldraPid << facts.heartbeatRead
                                                << facts.inErrorState << facts.heartbeatMissed;
    }
}

TEST(JudgementTest, StrikesOptionsRecoveryAndReboot) {
    const struct {
        const char* situation;
        HealthFacts facts;
        HealthHistory before;
        uint32_t maxStrikes;
        HealthHistory next;
        bool recovered;
        bool reboot;
    } cases[] = {
        {"cold start", kAbsent, {kNormal, 0}, 3, {kNormal, 1}, false, false},
        {"third strike takes the backup", kAbsent, {kNormal, 2}, 3, {kBackup, 3}, false, false},
        {"fourth strike reboots", kAbsent, {kBackup, 3}, 3, {kBackup, 4}, false, true},
        {"recovery at strike 2", kHealthy, {kNormal, 2}, 3, {kNormal, 0}, true, false},
        {"recovery on the backup", kHealthy, {kBackup, 3}, 3, {kNormal, 0}, true, false},
        {"backup from the start, healthy", kHealthy, {kBackup, 0}, 3, {kBackup, 0}, false, false},
        {"backup from the start, recovery", kHealthy, {kBackup, 1}, 3, {kNormal, 0}, true, false},
        {"factory is kept at strike 3", kAbsent, {kFactory, 2}, 3, {kFactory, 3}, false, false},
        {"factory is kept at recovery", kHealthy, {kFactory, 3}, 3, {kFactory, 0}, true, false},
        {"maximum 0 reboots at once", kAbsent, {kNormal, 0}, 0, {kNormal, 1}, false, true},
        {"maximum 0 leaves a healthy one", kHealthy, {kNormal, 0}, 0, {kNormal, 0}, false, false},
        {"maximum 2 never tries the backup", kAbsent, {kNormal, 2}, 2, {kBackup, 3}, false, true},
        {"largest maximum", kAbsent, {kBackup, kMost - 1}, kMost, {kBackup, kMost}, false, false},
        {"strikes wrap", kAbsent, {kBackup, kMost}, kMost, {kBackup, 0}, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        const Judgement judgement = Judge(c.facts, c.before, c.maxStrikes);
        EXPECT_EQ(judgement.next.optionsType, c.next.optionsType);
        EXPECT_EQ(judgement.next.strikes, c.next.strikes);
        EXPECT_EQ(judgement.recovered, c.recovered);
        EXPECT_EQ(judgement.reboot, c.reboot);
    }
}

TEST(JudgementTest, TextsAreTheOperatorsAndUnknownValuesHaveNone) {
    std::string texts;
    for (int i = -1; i < 7; ++i) {
        texts += std::string(Text(static_cast<KeldraState>(i))) + "|";
        texts += std::string(Text(static_cast<OptionsType>(i))) + "\n";
    }
    EXPECT_EQ(texts,
              "|\nKeldra_State_Unknown|Normal_Options\nKeldra_Not_Running|Backup_Options\n"
              "Keldra_In_Error_State|Factory_Options\nKeldra_Missed_Heartbeat|\n"
              "Keldra_Up_And_Okay|\n|\n|\n");
}

}  // namespace
