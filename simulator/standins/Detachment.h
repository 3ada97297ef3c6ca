#pragma once

namespace Simulator {

// Leaves the launching process behind as a daemon does: the constructor returns in the daemon.
// The launcher waits for `Ready` and then exits 0, or 4 when the daemon ends before it.
class Detachment {
public:
    Detachment();
    void Ready();

private:
    int toLauncher_ = -1;
};

}  // namespace Simulator
