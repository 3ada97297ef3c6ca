#pragma once

#include <cstdint>

#include "core/timer/TimerBase.h"

namespace Quenda {

// Fires at a fixed period until it is stopped. Each expiry follows the one before it by exactly
// one period, without drift; after a stall it fires once for each period that was missed.
class PeriodicTimer : public TimerBase {
public:
    using TimerBase::TimerBase;

    // The first expiry comes after `firstMs` milliseconds. A period of 0 counts as 1 ms.
    void Start(unsigned int firstMs, unsigned int periodMs);
    // The first expiry comes after a random delay below half the period, which spreads timers that
    // are started together. A period of 0 counts as 1 ms and is due at once.
    void Start(unsigned int periodMs);

    // Calls the callback and arms the timer one period after its expiry. If the callback calls
    // `Start`, the next call comes one period after the expiry that `Start` has set.
    void Expire(const TimeValue& now) override;

private:
    uint32_t periodMs_ = 1;
};

}  // namespace Quenda
