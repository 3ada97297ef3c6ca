#pragma once

#include <string>

// Reports to the simulator what this program does: who it is and what happens.
void Announce(const std::string& who, const std::string& what);

// Leaves the launching process behind as a daemon does. Returns in the daemon; the launcher
// waits for `Ready` and then exits 0, or 4 when the daemon ends before it.
class Detachment {
public:
    Detachment();
    void Ready();

private:
    int toLauncher_ = -1;
};
