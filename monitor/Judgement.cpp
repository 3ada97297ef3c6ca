#include "monitor/Judgement.h"

namespace Monitor {

namespace {

// One row of an enumeration's texts; a row with the value -1 ends the table.
struct EnumText {
    int32_t value;
    const char* text;
};

// The search runs from the top. That 3 comes before 2 has no effect, as no value occurs twice; the
// order is the one that the terminal's software has always had.
constexpr EnumText kStateTexts[] = {
    {0, "Keldra_State_Unknown"},  {1, "Keldra_Not_Running"}, {3, "Keldra_Missed_Heartbeat"},
    {2, "Keldra_In_Error_State"}, {4, "Keldra_Up_And_Okay"}, {-1, nullptr},
};

constexpr EnumText kOptionsTexts[] = {
    {0, "Normal_Options"},
    {1, "Backup_Options"},
    {2, "Factory_Options"},
    {-1, nullptr},
};

const char* FindText(const EnumText* table, int32_t value) {
    for (; table->value != -1; ++table) {
        if (table->value == value) {
            return table->text;
        }
    }
    return "";
}

KeldraState Classify(int32_t keldraPid, const HeartbeatFacts& heartbeat) {
    if (keldraPid < 0) {
        return KeldraState::Keldra_State_Unknown;
    }
    if (keldraPid == 0) {
        return KeldraState::Keldra_Not_Running;
    }
    if (!heartbeat.read || heartbeat.inErrorState) {
        return KeldraState::Keldra_In_Error_State;
    }
    return heartbeat.missed ? KeldraState::Keldra_Missed_Heartbeat
                            : KeldraState::Keldra_Up_And_Okay;
}

}  // namespace

const char* Text(KeldraState state) {
    return FindText(kStateTexts, static_cast<int32_t>(state));
}

const char* Text(OptionsType type) {
    return FindText(kOptionsTexts, static_cast<int32_t>(type));
}

Judgement Judge(const HeartbeatFacts& heartbeat, uint32_t maxStrikes,
                SupervisionState supervision) {
    const uint32_t silentPeriods = supervision.strikes + 1;
    supervision.keldra_state = Classify(supervision.keldra_pid, heartbeat);
    if (supervision.keldra_state != KeldraState::Keldra_Up_And_Okay) {
        if (supervision.options_type == OptionsType::Normal_Options && supervision.strikes > 1) {
            supervision.options_type = OptionsType::Backup_Options;
        }
        ++supervision.strikes;
        return {supervision, silentPeriods, false, supervision.strikes > maxStrikes};
    }
    const bool recovered = supervision.strikes != 0;
    if (recovered && supervision.options_type == OptionsType::Backup_Options) {
        supervision.options_type = OptionsType::Normal_Options;
    }
    supervision.strikes = 0;
    return {supervision, silentPeriods, recovered, false};
}

}  // namespace Monitor
