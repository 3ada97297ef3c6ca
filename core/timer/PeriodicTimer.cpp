#include "core/timer/PeriodicTimer.h"

#include <cstdlib>

namespace Quenda {

void PeriodicTimer::Start(unsigned int firstMs, unsigned int periodMs) {
    periodMs_ = periodMs == 0 ? 1 : periodMs;
    TimeValue first;
    first.SetToNowPlus(firstMs);
    StartAt(first);
}

void PeriodicTimer::Start(unsigned int periodMs) {
    const unsigned int offset =
        periodMs > 1 ? static_cast<unsigned int>(rand()) % (periodMs / 2) : 0;
    Start(offset, periodMs);
}

void PeriodicTimer::Expire(const TimeValue& now) {
    if (!InvokeCallback(now) || !IsActive()) {
        return;
    }
    // From the previous expiry, not from now: a stall gives one call for each missed period.
    TimeValue next = Expiry();
    next.AddMilliseconds(periodMs_);
    StartAt(next);
}

}  // namespace Quenda
