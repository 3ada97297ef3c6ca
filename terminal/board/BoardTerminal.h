#pragma once

#include <filesystem>
#include <string>

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

    // The status is -1 also if the machine restarts before the script ends.
    CommandResult Run(const std::string& script) override;
    bool Pump(int timeoutMs, int input = -1) override;
    std::string Description() override;

private:
    bool Boot(std::string* reason) override;
    bool SwitchOn();
    void SwitchOff();
    // Waits for the end of a script or of the boot, which init reports alike.
    void AwaitEnd(double seconds);
    void TakeConsole(const std::string& line);

    std::string directory_;
    unsigned divisor_;
    pid_t emulator_ = -1;
    int console_ = -1;  // ends when the machine restarts, which the emulator does not do
    unsigned boots_ = 0;
    std::string lastLines_;  // of the console, for the reason of a failed boot
    std::string text_;       // of the console, not yet a whole line
    bool isUp_ = false;
    CommandResult result_;  // of the last script; its status is -1 before its end
};

}  // namespace Terminals::Board
