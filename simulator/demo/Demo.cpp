// Shows the daemon at work in a simulated terminal: a fixed story, or whatever the user wants to
// happen. Exit status: 0 as expected, 1 something else was seen, 2 wrong use, 3 no terminal here.
#include <getopt.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "simulator/Emulation.h"
#include "simulator/Faults.h"
#include "simulator/Namespaces.h"
#include "simulator/SimulatedTerminal.h"
#include "simulator/demo/Interactive.h"
#include "simulator/demo/Printer.h"
#include "simulator/demo/ResultTable.h"
#include "simulator/demo/Story.h"

namespace fs = std::filesystem;

namespace {

using namespace Simulator;

constexpr char kUsage[] =
    "usage: %s [--interactive] [--keldra PATH] [--heartbeat SECONDS] [--times FILE]\n"
    "     [--target DIRECTORY]\n"
    "  --interactive        cause faults by key or command instead of watching the story\n"
    "  --keldra PATH        supervise this program instead of the stand-in\n"
    "  --heartbeat SECONDS  heartbeat timeout (1)\n"
    "  --times FILE         write the measured times, separated by tabs\n"
    "  --target DIRECTORY   run the daemon that was built there for the board, in an emulator\n";

struct Arguments {
    bool interactive = false;
    std::string keldra;
    unsigned heartbeat = 1;
    std::string times;
    std::string target;
};

bool Parse(int argc, char** argv, Arguments* arguments) {
    static const option kOptions[] = {
        {"interactive", no_argument, nullptr, 'i'},     {"keldra", required_argument, nullptr, 'k'},
        {"heartbeat", required_argument, nullptr, 'h'}, {"times", required_argument, nullptr, 't'},
        {"target", required_argument, nullptr, 'b'},    {nullptr, 0, nullptr, 0}};
    int option = 0;
    while ((option = getopt_long(argc, argv, "", kOptions, nullptr)) != -1) {
        switch (option) {
            case 'i':
                arguments->interactive = true;
                break;
            case 'k':
                arguments->keldra = optarg;
                break;
            case 'h':
                arguments->heartbeat = static_cast<unsigned>(strtoul(optarg, nullptr, 10));
                break;
            case 't':
                arguments->times = optarg;
                break;
            case 'b':
                arguments->target = optarg;
                break;
            default:
                return false;
        }
    }
    return optind == argc && arguments->heartbeat > 0;
}

TerminalOptions Describe(const Arguments& arguments) {
    const fs::path here = fs::read_symlink("/proc/self/exe").parent_path();
    TerminalOptions options;
    options.monitorProgram = here.parent_path() / "monitor" / "keldra_monitor";
    options.standInDirectory = here;
    options.keldraProgram = arguments.keldra;
    if (!arguments.target.empty()) {
        UseTargetDaemon(arguments.target, &options);
    }
    return options;
}

int TellStory(const Arguments& arguments, SimulatedTerminal* terminal, const Printer& printer) {
    Story story(terminal, &printer, arguments.heartbeat);
    const bool passed = story.Tell();
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
        (void)fprintf(stderr, kUsage, "demo");
        return 2;
    }
    std::string reason;
    if (!NamespacesPermitted(&reason)) {
        std::cerr << reason << "\n";
        return 3;
    }
    const Printer printer;
    SimulatedTerminal terminal(Describe(arguments));
    terminal.SetListener([&printer](const Event& event) { printer.Show(event); });
    if (!terminal.PowerOn(&reason)) {
        std::cerr << "the terminal does not come up: " << reason << "\n";
        return 3;
    }
    terminal.Note("the terminal is switched on; a heartbeat is due every " +
                  std::to_string(arguments.heartbeat) + " s");
    if (!arguments.target.empty()) {
        terminal.Note(
            "its daemon is the board's own, run by an emulator; Keldra counts big-endian");
    }
    const CommandResult start = terminal.StartMonitor({"-t", std::to_string(arguments.heartbeat)});
    if (start.status != 0) {
        std::cerr << "the daemon does not start: " << start.output << "\n";
        return 1;
    }
    if (arguments.interactive) {
        RunInteractive(&terminal, printer);
        return 0;
    }
    return TellStory(arguments, &terminal, printer);
}
