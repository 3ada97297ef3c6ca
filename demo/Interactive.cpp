#include "demo/Interactive.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <vector>

#include "demo/Printer.h"
#include "terminal/Faults.h"

namespace Demo {
namespace {

using namespace Terminals;

volatile std::sig_atomic_t interrupted = 0;

struct Command {
    std::string key;
    std::string word;
    const char* help;
    // Returns "", or the reason for which it failed. If empty, `word` names a fault.
    std::function<std::string(Terminal*)> run = nullptr;
};

std::string QueryStatus(Terminal* terminal) {
    PrintQuote(terminal->Run(terminal->MonitorCommand() + " -i").output);
    return "";
}

// False for a pipe: there the next word waits for its turn.
bool IsKeyPressed() {
    pollfd keys = {STDIN_FILENO, POLLIN, 0};
    return isatty(STDIN_FILENO) != 0 && poll(&keys, 1, 0) > 0;
}

// Waits for a recovery after the last other command, so that a script can cause the next fault in a
// Keldra that is well. Any key ends it.
std::string WaitForRecovery(Terminal* terminal) {
    terminal->GiveUpWhen([] { return interrupted != 0 || IsKeyPressed(); });
    const bool isWell = terminal->Await(Source::kLog, "started responding again", 60).has_value();
    terminal->GiveUpWhen([] { return interrupted != 0; });
    return isWell ? "" : "Keldra has not recovered yet";
}

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {"h", "hang", "Keldra hangs"},
        {"c", "crash", "Keldra crashes"},
        {"e", "error", "Keldra reports an error (count 0)"},
        {"s", "short", "Keldra writes a short heartbeat file"},
        {"m", "missing", "Keldra removes its heartbeat file"},
        {"i", "ignore", "Keldra hangs and ignores SIGQUIT"},
        {"r", "refuse", "from now on no Keldra starts", RefuseToStart},
        {"b", "damage", "the primary options file is damaged", DamagePrimaryOptions},
        {"f", "repair", "repair everything", Repair},
        {"d", "sshd", "sshd dies", KillSshd},
        {"q", "status", "query the daemon's status", QueryStatus},
        {"w", "wait", "wait until Keldra responds again", WaitForRecovery},
        {"x", "quit", "quit"},
        {"?", "help", "these commands"},
    };
    return commands;
}

void Help() {
    for (const Command& command : Commands()) {
        PrintLine("  " + In(Colour::kBold, command.key) + "  " + command.word +
                  std::string(10 - command.word.size(), ' ') + command.help);
    }
}

// Carries out a key or a word. False if that is not possible.
bool Obey(const std::string& input, Terminal* terminal) {
    const auto& all = Commands();
    const auto command = std::find_if(all.begin(), all.end(), [&](const Command& c) {
        return input == c.word || input == c.key;
    });
    if (command == all.end()) {
        PrintLine("unknown command '" + input + "'; '?' lists the commands", Colour::kYellow);
        return false;
    }
    if (command->word == "help") {
        Help();
        return true;
    }
    PrintLine("> " + command->word, Colour::kBold);
    if (command->word != "wait") {
        terminal->Mark();
    }
    const std::string obstacle =
        command->run ? command->run(terminal) : Cause(terminal, command->word);
    if (!obstacle.empty()) {
        PrintLine("not possible: " + obstacle, Colour::kYellow);
    }
    return obstacle.empty();
}

// Appends some input, each key as a line. False at the end of the input.
bool Read(bool isKeys, std::string* text) {
    std::array<char, 256> chunk = {};
    const ssize_t count = read(STDIN_FILENO, chunk.data(), chunk.size());
    if (isKeys && chunk[0] == '\x1b') {
        *text += "^[\n";  // an arrow, for example, which comes as several characters
        return true;
    }
    for (ssize_t i = 0; i < count; ++i) {
        *text += chunk[static_cast<size_t>(i)];
        *text += isKeys ? "\n" : "";
    }
    *text += count > 0 ? "" : "\n";  // a last line may lack its end
    return count > 0;
}

}  // namespace

bool RunInteractive(Terminal* terminal) {
    Help();
    (void)signal(SIGINT, [](int) { interrupted = 1; });
    (void)signal(SIGTERM, [](int) { interrupted = 1; });
    terminal->GiveUpWhen([] { return interrupted != 0; });
    // Each key comes at once and is not shown. Ctrl-C still works.
    const bool isKeys = isatty(STDIN_FILENO) != 0 && std::system("stty -icanon -echo") == 0;
    std::string text;
    bool isOpen = true;
    bool isDone = true;
    while (isOpen && interrupted == 0) {
        if (!terminal->Pump(1000, STDIN_FILENO)) {
            continue;
        }
        isOpen = Read(isKeys, &text);
        for (size_t end = 0; (end = text.find('\n')) != std::string::npos; text.erase(0, end + 1)) {
            const std::string input = text.substr(0, end);
            if (input == "x" || input == "quit") {
                isOpen = false;
                break;
            }
            isDone = (input.empty() || Obey(input, terminal)) && isDone;
        }
    }
    return isKeys ? std::system("stty icanon echo") == 0 : isDone;
}

}  // namespace Demo
