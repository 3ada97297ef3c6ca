#pragma once

#include "core/output/Writable.h"
#include "examples/diagnostics_console/Figures.h"
#include "examples/diagnostics_console/LineReader.h"
#include "examples/diagnostics_console/OptionsDesk.h"

// The commands of the console: each line is a subject and a command of its own.
class Console {
public:
    // Neither is owned, and both outlive the console.
    Console(Quenda::EventLoop& loop, Quenda::Writable& out) : loop_(loop), out_(out) {}

    bool Start();

private:
    // Null: the input has ended. Stops the loop, as "quit" does.
    void OnLine(const char* line);
    void Run(int argc, const char* const* argv);
    void Quit();

    Quenda::EventLoop& loop_;
    Quenda::Writable& out_;
    Figures figures_;
    OptionsDesk options_;
    LineReader input_{Quenda::MakeCallback(this, &Console::OnLine)};
};
