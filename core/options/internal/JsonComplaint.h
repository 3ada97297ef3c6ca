// How the JSON values report a check that failed but need not end the process.
#pragma once

#include <cstdio>

namespace Quenda {

// Goes to standard output, flushed: also when the process ends right after it.
inline void ComplainAboutJson(const char* message) {
    (void)std::printf("Quenda workaround: %s\n", message);
    (void)std::fflush(stdout);
}

}  // namespace Quenda
