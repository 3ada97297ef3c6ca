// The judgement of one health check: what Keldra's state is, and what follows from it. Pure: it
// turns facts into a decision, and HealthCheck carries the decision out.
#pragma once

#include <cstdint>

namespace Monitor {

enum class KeldraState : int32_t {
    kUnknown = 0,  // the process table could not be read
    kNotRunning = 1,
    kInErrorState = 2,
    kMissedHeartbeat = 3,
    kUpAndOkay = 4,
};

// Which options file Keldra is started with.
enum class OptionsType : int32_t {
    kNormal = 0,
    kBackup = 1,
    kFactory = 2,
};

// As operators see them; "" for any other value.
const char* Text(KeldraState state);
const char* Text(OptionsType type);

// What one check found out.
struct HealthFacts {
    int32_t keldraPid;     // 0: not running, negative: unknown
    bool heartbeatRead;    // the heartbeat file could be read
    bool inErrorState;     // its count is 0
    bool heartbeatMissed;  // its count is the one of the check before
};

// What carries over from check to check.
struct HealthHistory {
    OptionsType optionsType;
    uint32_t strikes;  // consecutive unhealthy checks
};

struct Judgement {
    KeldraState state;
    HealthHistory next;
    bool recovered;  // healthy again after at least one strike
    bool reboot;     // the strikes passed the maximum
};

KeldraState ClassifyKeldra(const HealthFacts& facts);

// From the third strike on, Keldra gets the backup options file; the first recovery returns it to
// the primary one. That holds too where the primary file was missing at start-up, and the
// factory file is never left: both are meant so.
Judgement Judge(const HealthFacts& facts, const HealthHistory& before, uint32_t maxStrikes);

}  // namespace Monitor
