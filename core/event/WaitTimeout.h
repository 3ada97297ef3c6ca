#pragma once

#include <climits>
#include <cstdint>

#include "core/timer/TimeValue.h"

namespace Quenda {

// The time-out for epoll_wait(2) in milliseconds: rounded down, so that the loop never sleeps
// past a timer, except that a wait of less than a millisecond becomes 1, not a busy poll. Waits
// that an int cannot hold are cut: waking early is harmless.
inline int WaitTimeoutMs(const TimeValue& wait) {
    const int64_t milliseconds = wait.Milliseconds();
    if (milliseconds == 0 && wait.Nanoseconds() > 0) {
        return 1;
    }
    return milliseconds > INT_MAX ? INT_MAX : static_cast<int>(milliseconds);
}

}  // namespace Quenda
