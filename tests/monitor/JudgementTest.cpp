#include "monitor/Judgement.h"

#include <gtest/gtest.h>

using namespace Monitor;

namespace {

constexpr OptionsType kNormal = OptionsType::Normal_Options;
constexpr OptionsType kBackup = OptionsType::Backup_Options;
constexpr OptionsType kFactory = OptionsType::Factory_Options;
constexpr uint32_t kMost = UINT32_MAX;

TEST(JudgementTest, StateComesFromTheFirstFactThatDecides) {
    // The PID found, the heartbeat facts and the state's text.
    const std::tuple<int32_t, HeartbeatFacts, const char*> cases[] = {
        {-1, {false, true, true}, "Keldra_State_Unknown"},
        {0, {false, true, true}, "Keldra_Not_Running"},
        {1, {false, false, false}, "Keldra_In_Error_State"},  // no heartbeat file
        {1, {true, true, false}, "Keldra_In_Error_State"},    // the count is 0
        {1, {true, true, true}, "Keldra_In_Error_State"},
        {1, {true, false, true}, "Keldra_Missed_Heartbeat"},
        {1, {true, false, false}, "Keldra_Up_And_Okay"},
    };
    for (const auto& [pid, heartbeat, text] : cases) {
        SupervisionState state{};
        state.keldra_pid = pid;
        EXPECT_STREQ(Text(Judge(heartbeat, kMost, state).supervision.keldra_state), text);
    }
    EXPECT_STREQ(Text(static_cast<KeldraState>(5)), "");
    EXPECT_STREQ(Text(static_cast<KeldraState>(-1)), "");
    EXPECT_STREQ(Text(static_cast<OptionsType>(3)), "");
}

TEST(JudgementTest, StrikesOptionsRecoveryAndReboot) {
    enum { kAbsent = 0, kHealthy = 42 };  // the PID found
    const struct {
        const char* situation;
        int32_t pid;
        OptionsType optionsBefore;
        uint32_t strikesBefore;
        uint32_t maxStrikes;
        OptionsType options;
        uint32_t strikes;
        bool recovered;
        bool reboot;
    } cases[] = {
        {"cold start", kAbsent, kNormal, 0, 3, kNormal, 1, false, false},
        {"second strike keeps the primary", kAbsent, kNormal, 1, 3, kNormal, 2, false, false},
        {"third strike takes the backup", kAbsent, kNormal, 2, 3, kBackup, 3, false, false},
        {"fourth strike reboots", kAbsent, kBackup, 3, 3, kBackup, 4, false, true},
        {"recovery at strike 2", kHealthy, kNormal, 2, 3, kNormal, 0, true, false},
        {"recovery on the backup", kHealthy, kBackup, 3, 3, kNormal, 0, true, false},
        {"backup from the start, healthy", kHealthy, kBackup, 0, 3, kBackup, 0, false, false},
        {"backup from the start, recovery", kHealthy, kBackup, 1, 3, kNormal, 0, true, false},
        {"factory is kept at strike 3", kAbsent, kFactory, 2, 3, kFactory, 3, false, false},
        {"factory is kept at recovery", kHealthy, kFactory, 3, 3, kFactory, 0, true, false},
        {"maximum 0 reboots at once", kAbsent, kNormal, 0, 0, kNormal, 1, false, true},
        {"maximum 0 leaves a healthy one", kHealthy, kNormal, 0, 0, kNormal, 0, false, false},
        {"maximum 2 never tries the backup", kAbsent, kNormal, 2, 2, kBackup, 3, false, true},
        {"largest maximum", kAbsent, kBackup, kMost - 1, kMost, kBackup, kMost, false, false},
        {"strikes wrap", kAbsent, kBackup, kMost, kMost, kBackup, 0, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.situation);
        SupervisionState state{};
        state.options_type = c.optionsBefore;
        state.strikes = c.strikesBefore;
        state.keldra_pid = c.pid;
        const Judgement judgement = Judge({true, false, false}, c.maxStrikes, state);
        EXPECT_STREQ(Text(judgement.supervision.options_type), Text(c.options));
        EXPECT_EQ(judgement.supervision.strikes, c.strikes);
        EXPECT_EQ(judgement.silentPeriods, c.strikesBefore + 1);
        EXPECT_EQ(judgement.recovered, c.recovered);
        EXPECT_EQ(judgement.reboot, c.reboot);
    }
}

}  // namespace
