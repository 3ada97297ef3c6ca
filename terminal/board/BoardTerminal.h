#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "terminal/Terminal.h"

namespace Terminals::Board {

// A terminal that is an emulated machine: another processor, another kernel, and a watchdog whose
// bite restarts it. After a restart it counts as booted from its backup partition, the unchanged
// image.
class BoardTerminal : public Terminal {
public:
    // The directory has the files of terminal/board/make-image. The watchdog bites `divisor` times
    // earlier than its messages say.
    BoardTerminal(const std::filesystem::path& directory, unsigned divisor)
        : directory_(std::filesystem::absolute(directory)), divisor_(divisor) {}
    ~BoardTerminal() override { SwitchOff(); }

    // The status is -1 also if the machine restarts before the command ends.
    CommandResult Run(const std::vector<std::string>& command) override;
    bool Pump(int timeoutMs, int input = -1) override;
    // Complete only after the first boot.
    std::string Description() const override;

private:
    bool Boot(std::string* reason) override;
    bool SwitchOn();
    void SwitchOff();
    void TakeConsole(const std::string& line);

    std::string directory_;
    unsigned divisor_;
    pid_t emulator_ = -1;
    int console_ = -1;  // ends when the machine restarts, which the emulator does not do
    unsigned boots_ = 0;
    std::string kernel_;
    std::string lastLines_;  // of the console, for the reason of a failed boot
    std::string text_;       // of the console, not yet a whole line
    bool isUp_ = false;
    bool hasEnded_ = false;  // whether the command of `Run` has ended
    CommandResult result_;
};

}  // namespace Terminals::Board
