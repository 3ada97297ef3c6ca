#include "monitor/Judgement.h"

#include "monitor/EnumText.h"

namespace Monitor {

namespace {

constexpr EnumText kStateTexts[] = {
    {static_cast<int32_t>(KeldraState::kUnknown), "Keldra_State_Unknown"},
    {static_cast<int32_t>(KeldraState::kNotRunning), "Keldra_Not_Running"},
    {static_cast<int32_t>(KeldraState::kMissedHeartbeat), "Keldra_Missed_Heartbeat"},
    {static_cast<int32_t>(KeldraState::kInErrorState), "Keldra_In_Error_State"},
    {static_cast<int32_t>(KeldraState::kUpAndOkay), "Keldra_Up_And_Okay"},
    {kEnumTextEnd, nullptr},
};

constexpr EnumText kOptionsTexts[] = {
    {static_cast<int32_t>(OptionsType::kNormal), "Normal_Options"},
    {static_cast<int32_t>(OptionsType::kBackup), "Backup_Options"},
    {static_cast<int32_t>(OptionsType::kFactory), "Factory_Options"},
    {kEnumTextEnd, nullptr},
};

OptionsType NextOptions(bool healthy, const HealthHistory& before) {
    if (!healthy && before.optionsType == OptionsType::kNormal && before.strikes > 1) {
        return OptionsType::kBackup;
    }
    if (healthy && before.optionsType == OptionsType::kBackup && before.strikes != 0) {
        return OptionsType::kNormal;
    }
    return before.optionsType;
}

}  // namespace

const char* Text(KeldraState state) {
    return FindEnumText(kStateTexts, static_cast<int32_t>(state));
}

const char* Text(OptionsType type) {
    return FindEnumText(kOptionsTexts, static_cast<int32_t>(type));
}

KeldraState ClassifyKeldra(const HealthFacts& facts) {
    if (facts.keldraPid < 0) {
        return KeldraState::kUnknown;
    }
    if (facts.keldraPid == 0) {
        return KeldraState::kNotRunning;
    }
    if (!facts.heartbeatRead || facts.inErrorState) {
        return KeldraState::kInErrorState;
    }
    return facts.heartbeatMissed ? KeldraState::kMissedHeartbeat : KeldraState::kUpAndOkay;
}

Judgement Judge(const HealthFacts& facts, const HealthHistory& before, uint32_t maxStrikes) {
    Judgement judgement{};
    judgement.state = ClassifyKeldra(facts);
    const bool healthy = judgement.state == KeldraState::kUpAndOkay;
    judgement.next.optionsType = NextOptions(healthy, before);
    judgement.next.strikes = healthy ? 0 : before.strikes + 1;
    judgement.recovered = healthy && before.strikes != 0;
    judgement.reboot = judgement.next.strikes > maxStrikes;
    return judgement;
}

}  // namespace Monitor
