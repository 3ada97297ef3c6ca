// Shows the daemon at work on a terminal: tells a fixed story, or carries out the user's commands.
// Exit status: 0 as expected, 1 something else was seen, 2 wrong use.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "demo/BoardScenes.h"
#include "demo/Interactive.h"
#include "demo/LifeOfATerminal.h"
#include "demo/ResultTable.h"
#include "terminal/board/BoardTerminal.h"
#include "terminal/simulated/SimulatedTerminal.h"

namespace fs = std::filesystem;

namespace {

using namespace Demo;
using namespace Terminals;

// The options of scripts/demo, which has checked them.
struct Arguments {
    bool interactive = false;
    std::string keldra;
    unsigned heartbeat = 1;
    std::string times;
    bool target = false;

    // The board's watchdog bites this many times earlier than it says. With a longer heartbeat
    // timeout it is less, so that a check still comes well before the bite.
    unsigned Divisor() const { return std::max(1U, 20 / heartbeat); }
};

bool Parse(int argc, char** argv, Arguments* arguments) {
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--interactive") {
            arguments->interactive = true;
        } else if (word == "--keldra" && ++i < argc) {
            arguments->keldra = argv[i];
        } else if (word == "--heartbeat" && ++i < argc) {
            arguments->heartbeat = static_cast<unsigned>(strtoul(argv[i], nullptr, 10));
        } else if (word == "--times" && ++i < argc) {
            arguments->times = argv[i];
        } else if (word == "--target") {
            arguments->target = true;
        } else {
            return false;
        }
    }
    return arguments->heartbeat > 0;
}

std::unique_ptr<Terminal> Build(const Arguments& arguments) {
    const fs::path here = fs::read_symlink("/proc/self/exe").parent_path();
    if (arguments.target) {
        const fs::path board = here.parent_path().parent_path() / "board";
        return std::make_unique<Board::BoardTerminal>(board, arguments.Divisor());
    }
    Simulated::TerminalOptions options;
    options.monitorProgram = here.parent_path() / "monitor" / "keldra_monitor";
    options.standInDirectory = here.parent_path() / "terminal" / "standins";
    options.keldraProgram = arguments.keldra;
    return std::make_unique<Simulated::SimulatedTerminal>(options);
}

int TellStory(const Arguments& arguments, Terminal* terminal, const Printer& printer) {
    // Much longer than any step takes, even on a slow host.
    const double patience = 45 + 4.0 * arguments.heartbeat + 300.0 / arguments.Divisor();
    auto scenes = LifeOfATerminal(patience);
    if (arguments.target) {
        const auto more = BoardScenes(arguments.Divisor(), arguments.heartbeat, patience);
        scenes.insert(scenes.end() - 1, more.begin(), more.end());
    }
    Story story(terminal, &printer, patience);
    const bool passed = story.Tell(scenes);
    printer.Heading("the story in short");
    PrintTable(printer, story.Situations(), arguments.heartbeat);
    char line[80];
    (void)snprintf(line, sizeof(line), "%s after %.1f s",
                   passed ? "everything as expected" : "NOT everything as expected",
                   terminal->Seconds());
    printer.Line(line, passed ? Colour::kGreen : Colour::kRed);
    if (!arguments.times.empty() &&
        !WriteTimes(arguments.times, story.Situations(), arguments.heartbeat)) {
        std::cerr << "cannot write " << arguments.times << "\n";
        return 1;
    }
    return passed ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    if (!Parse(argc, argv, &arguments)) {
        std::cerr << "wrong use; see scripts/demo --help\n";
        return 2;
    }
    const Printer printer;
    const auto terminal = Build(arguments);
    terminal->SetListener([&printer](const Event& event) { printer.Show(event); });
    std::string reason;
    if (!terminal->PowerOn(&reason)) {
        std::cerr << "the terminal does not come up: " << reason << "\n";
        return 1;
    }
    const std::string heartbeat = std::to_string(arguments.heartbeat);
    terminal->Note("the terminal is switched on (" + terminal->Description() +
                   "); a heartbeat is due every " + heartbeat + " s");
    const CommandResult start = terminal->StartMonitor({"-t", heartbeat});
    if (start.status != 0) {
        std::cerr << "the daemon does not start: " << start.output << "\n";
        return 1;
    }
    if (arguments.interactive) {
        return RunInteractive(terminal.get(), printer) ? 0 : 1;
    }
    return TellStory(arguments, terminal.get(), printer);
}
