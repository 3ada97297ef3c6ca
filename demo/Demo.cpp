// Shows the daemon at work on a terminal: tells a fixed story, or carries out the user's commands.
// Exit status: 0 as expected, 1 something else was seen, 2 wrong use.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "demo/BoardScenes.h"
#include "demo/Interactive.h"
#include "demo/LifeOfATerminal.h"
#include "demo/Printer.h"
#include "demo/ResultTable.h"
#include "terminal/board/BoardTerminal.h"
#include "terminal/simulated/SimulatedTerminal.h"

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
    if (arguments.target) {
        return std::make_unique<Board::BoardTerminal>(BOARD_DIRECTORY, arguments.Divisor());
    }
    Simulated::TerminalOptions options;
    options.keldraProgram = arguments.keldra;
    return std::make_unique<Simulated::SimulatedTerminal>(options);
}

bool TellStory(const Arguments& arguments, Terminal* terminal) {
    // Much longer than any step takes, even on a slow host.
    const double patience = 45 + 4.0 * arguments.heartbeat + 300.0 / arguments.Divisor();
    auto scenes = LifeOfATerminal(patience);
    if (arguments.target) {
        const auto more = BoardScenes(arguments.Divisor(), arguments.heartbeat, patience);
        scenes.insert(scenes.end() - 1, more.begin(), more.end());
    }
    const bool passed = Tell(&scenes, terminal, patience);
    PrintHeading("the story in short");
    PrintTable(scenes, arguments.heartbeat);
    char line[80];
    (void)snprintf(line, sizeof(line), "%s after %.1f s",
                   passed ? "everything as expected" : "NOT everything as expected",
                   terminal->Seconds());
    PrintLine(line, passed ? Colour::kGreen : Colour::kRed);
    if (!arguments.times.empty() && !WriteTimes(arguments.times, scenes, arguments.heartbeat)) {
        std::cerr << "cannot write " << arguments.times << "\n";
        return false;
    }
    return passed;
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    if (!Parse(argc, argv, &arguments)) {
        std::cerr << "wrong use; see scripts/demo --help\n";
        return 2;
    }
    const auto terminal = Build(arguments);
    terminal->SetListener(PrintEvent);
    std::string reason;
    if (!terminal->PowerOn(&reason)) {
        std::cerr << "the terminal does not come up: " << reason << "\n";
        return 1;
    }
    const std::string heartbeat = std::to_string(arguments.heartbeat);
    terminal->Note("the terminal is switched on (" + terminal->Description() +
                   "); a heartbeat is due every " + heartbeat + " s");
    const CommandResult start = terminal->StartMonitor("-t " + heartbeat);
    if (start.status != 0) {
        std::cerr << "the daemon does not start: " << start.output << "\n";
        return 1;
    }
    const bool passed = arguments.interactive ? RunInteractive(terminal.get())
                                              : TellStory(arguments, terminal.get());
    return passed ? 0 : 1;
}
