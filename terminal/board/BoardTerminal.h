#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "terminal/Terminal.h"

namespace Terminals::Board {

// A terminal that is a machine of its own: another processor, another kernel, and a watchdog whose
// bite restarts it. After a restart it is on its backup partition: the image as it was made.
class BoardTerminal : public Terminal {
public:
    // The directory holds what terminal/board/make-image makes. The watchdog bites so many times
    // sooner than it says.
    BoardTerminal(const std::filesystem::path& directory, unsigned divisor)
        : directory_(std::filesystem::absolute(directory)), divisor_(divisor) {}
    ~BoardTerminal() override { SwitchOff(); }

    // -1 as the status, too, when the machine restarts meanwhile.
    CommandResult Run(const std::vector<std::string>& command) override;
    bool Pump(int timeoutMs, int input = -1) override;
    // Once it is switched on.
    std::string Description() const override;

private:
    bool Boot(std::string* reason) override;
    bool SwitchOn();
    void SwitchOff();
    void TakeConsole(const std::string& line);

    std::string directory_;
    unsigned divisor_;
    pid_t emulator_ = -1;
    int console_ = -1;  // ends when the machine switches itself off, instead of a restart
    unsigned boots_ = 0;
    std::string kernel_;
    std::string lastLines_;  // of the kernel
    std::string text_;       // of the console, that is not yet a line
    bool isUp_ = false;
    bool hasEnded_ = false;  // the running command
    CommandResult result_;
};

}  // namespace Terminals::Board
