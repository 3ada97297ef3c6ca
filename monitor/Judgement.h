// The judgement of one health check: Keldra's state and what to do about it. These functions are
// pure: HealthCheck collects the facts and carries out the decision.
#pragma once

#include <cstdint>

namespace Monitor {

// Operators see the names as texts.
enum class KeldraState : int32_t {
    Keldra_State_Unknown = 0,  // the process table could not be read
    Keldra_Not_Running = 1,
    Keldra_In_Error_State = 2,
    Keldra_Missed_Heartbeat = 3,
    Keldra_Up_And_Okay = 4,
};

// Which options file Keldra is started with.
enum class OptionsType : int32_t {
    Normal_Options = 0,
    Backup_Options = 1,
    Factory_Options = 2,
};

// "" for any other value.
const char* Text(KeldraState state);
const char* Text(OptionsType type);

// The heartbeat reader's results of one check.
struct HeartbeatFacts {
    bool read;          // the heartbeat file could be read
    bool inErrorState;  // its count is 0
    bool missed;        // its count is the same as at the previous check
};

// The state that lasts from check to check; zero at the start.
struct SupervisionState {
    OptionsType options_type;
    KeldraState keldra_state;  // of the last check
    uint32_t strikes;          // consecutive unhealthy checks
    int32_t sshd_pid;          // the last one found; 0: none, negative: unknown
    int32_t keldra_pid;        // the same
};

struct Judgement {
    SupervisionState supervision;  // after this check
    // Heartbeat periods since the last healthy check: the strikes before this check and 1.
    uint32_t silentPeriods;
    bool recovered;  // healthy again after at least one strike
    bool reboot;     // the strikes exceeded the maximum
};

// Judges Keldra, whose PID has been looked up.
//
// From the third strike on, Keldra gets the backup options file; the first recovery returns it to
// the primary one, even if the primary file was missing at start-up. The factory file is never
// left. Both are deliberate.
Judgement Judge(const HeartbeatFacts& heartbeat, uint32_t maxStrikes, SupervisionState supervision);

}  // namespace Monitor
