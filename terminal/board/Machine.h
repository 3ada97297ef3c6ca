#pragma once

#include <sys/types.h>

#include <string>

namespace Terminals::Board {

// A machine of the terminal's kind, in an emulator, while it is on. It is switched off with this
// object, and when the process that has it ends.
class Machine {
public:
    Machine() = default;
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine() { SwitchOff(); }

    // The directory holds what terminal/board/make-image makes; `parameters` are for the kernel.
    // False when there is no process or socket left.
    bool SwitchOn(const std::string& directory, const std::string& parameters);
    void SwitchOff();

    // The kernel's console. It ends when the machine switches itself off, which it does instead of
    // a restart. -1 while it is off.
    int Console() const { return console_; }

private:
    pid_t emulator_ = -1;
    int console_ = -1;
};

}  // namespace Terminals::Board
