// One simulated terminal of a fleet, with a metrics page on the loopback interface:
//
//   fleet_terminal ADDRESS SECONDS      where the page is, and the heartbeat timeout
//
// It obeys words on standard input, and ends at the end of the input. demo/fleet runs it.
#include <unistd.h>

#include <filesystem>
#include <iostream>

#include "terminal/Faults.h"
#include "terminal/simulated/SimulatedTerminal.h"

namespace fs = std::filesystem;

namespace {

using namespace Terminals;
using Simulated::SimulatedTerminal;

constexpr char kScript[] = "/usr/sbin/keldra-metrics";
constexpr char kPage[] = "/run/page";
// Its arguments are these two and the address.
constexpr char kServe[] = R"(
    chmod 755 $1 && mkdir -p $2/cgi-bin && ln -s $1 $2/cgi-bin/metrics &&
    { busybox httpd -f -p $3 -h $2 -c /dev/null & } && echo $! >/run/page.pid)";

// Serves the page, as the package's service script does. A reboot takes it away.
void ServePage(SimulatedTerminal* terminal, const std::string& address) {
    std::error_code ignored;  // without the script there is no page, which demo/fleet notices
    fs::copy_file(KELDRA_METRICS, terminal->Path(kScript), fs::copy_options::overwrite_existing,
                  ignored);
    (void)terminal->Run(std::string("set -- ") + kScript + " " + kPage + " " + address + kServe);
}

std::string SignalPage(Terminal* terminal, const std::string& signal) {
    return terminal->Run("kill -" + signal + " $(cat /run/page.pid)").output;
}

// Returns "" or the reason why it could not be done.
std::string Obey(const std::string& word, Terminal* terminal) {
    std::string obstacle;
    if (word == "damage") {
        obstacle = DamagePrimaryOptions(terminal);
    } else if (word == "refuse") {
        obstacle = RefuseToStart(terminal);
    } else if (word == "silence" || word == "answer") {
        return SignalPage(terminal, word == "answer" ? "CONT" : "STOP");
    }
    return obstacle.empty() ? Cause(terminal, word == "hang" ? word : "crash") : obstacle;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    SimulatedTerminal terminal;
    std::string reason;
    if (!terminal.PowerOn(&reason)) {
        std::cerr << "a terminal does not come up: " << reason << "\n";
        return 3;
    }
    ServePage(&terminal, argv[1]);
    if (terminal.StartMonitor(std::string("-t ") + argv[2]).status != 0) {
        return 1;
    }
    while (true) {
        if (terminal.Pump(200, STDIN_FILENO)) {
            std::string word;
            if (!std::getline(std::cin, word)) {
                return 0;
            }
            const std::string obstacle = Obey(word, &terminal);
            if (!obstacle.empty()) {
                std::cerr << argv[1] << ": " << word << ": " << obstacle << "\n";
            }
        }
        if (!fs::exists(terminal.Path(kPage))) {
            ServePage(&terminal, argv[1]);
        }
    }
}
