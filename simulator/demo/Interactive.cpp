#include "simulator/demo/Interactive.h"

#include <termios.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>
#include <functional>

#include "simulator/Faults.h"

namespace Simulator {
namespace {

volatile std::sig_atomic_t interrupted = 0;

// Keys arrive at once and unseen while this exists. Ctrl-C still works.
class SingleKeys {
public:
    SingleKeys() {
        active_ = tcgetattr(STDIN_FILENO, &saved_) == 0;
        termios keys = saved_;
        keys.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        if (active_) {
            (void)tcsetattr(STDIN_FILENO, TCSANOW, &keys);
        }
    }
    SingleKeys(const SingleKeys&) = delete;
    SingleKeys& operator=(const SingleKeys&) = delete;
    ~SingleKeys() {
        if (active_) {
            (void)tcsetattr(STDIN_FILENO, TCSANOW, &saved_);
        }
    }
    bool Active() const { return active_; }

private:
    termios saved_ = {};
    bool active_ = false;
};

struct Command {
    char key;
    const char* word;
    const char* help;
    // Returns "" or the reason why it could not be done.
    std::function<std::string(Terminal*, const Printer&)> run;
};

Command FaultCommand(char key, const char* word, const char* help, KeldraFault fault) {
    return {key, word, help, [fault](Terminal* t, const Printer&) { return Cause(t, fault); }};
}

Command LastingCommand(char key, const char* word, const char* help, void (*change)(Terminal*)) {
    return {key, word, help, [change](Terminal* t, const Printer&) {
                change(t);
                return std::string();
            }};
}

std::string QueryStatus(Terminal* terminal, const Printer& printer) {
    printer.Quote(terminal->Run(terminal->MonitorCommand({"-i"})).output);
    return "";
}

// For scripts: what follows happens to a Keldra that is well. The recovery is one that came after
// the last other command.
std::string WaitForRecovery(Terminal* terminal, const Printer&) {
    const bool well = terminal->Await(Source::kLog, "started responding again", 60).has_value();
    return well ? "" : "Keldra has not recovered within 60 s";
}

const std::array<Command, 13>& Commands() {
    static const std::array<Command, 13> commands = {
        FaultCommand('h', "hang", "Keldra hangs", KeldraFault::kHang),
        FaultCommand('c', "crash", "Keldra crashes", KeldraFault::kCrash),
        FaultCommand('e', "error", "Keldra reports an error (count 0)", KeldraFault::kError),
        FaultCommand('s', "short", "Keldra writes a short heartbeat file", KeldraFault::kShortFile),
        FaultCommand('m', "missing", "Keldra removes its heartbeat file",
                     KeldraFault::kMissingFile),
        FaultCommand('i', "ignore", "Keldra hangs and ignores SIGQUIT", KeldraFault::kIgnoreQuit),
        LastingCommand('r', "refuse", "from now on no Keldra starts", RefuseToStart),
        LastingCommand('b', "damage", "the primary options file is damaged", DamagePrimaryOptions),
        LastingCommand('f', "repair", "repair everything", Repair),
        Command{'d', "sshd", "sshd dies", [](Terminal* t, const Printer&) { return KillSshd(t); }},
        Command{'q', "status", "query the daemon's status", QueryStatus},
        Command{'w', "wait", "wait until Keldra responds again", WaitForRecovery},
        Command{'x', "quit", "quit", nullptr},
    };
    return commands;
}

void Help(const Printer& printer) {
    for (const Command& command : Commands()) {
        printer.Line(std::string("  ") + printer.In(Colour::kBold, {command.key}) + "  " +
                     std::string(command.word) + std::string(10 - strlen(command.word), ' ') +
                     command.help);
    }
    printer.Line("  " + printer.In(Colour::kBold, "?") + "  help      these commands");
}

// Carries out a key or a word. False when the user wants to go.
bool Obey(const std::string& input, Terminal* terminal, const Printer& printer) {
    for (const Command& command : Commands()) {
        if (input != command.word && input != std::string(1, command.key)) {
            continue;
        }
        if (!command.run) {
            return false;
        }
        if (command.key != 'w') {
            terminal->Mark();
        }
        const std::string obstacle = command.run(terminal, printer);
        if (!obstacle.empty()) {
            printer.Line("not possible: " + obstacle, Colour::kYellow);
        }
        return true;
    }
    if (!input.empty()) {
        Help(printer);
    }
    return true;
}

// Takes the complete commands out of the text: keys one by one, lines otherwise.
bool ObeyAll(std::string* text, bool keys, Terminal* terminal, const Printer& printer) {
    while (!text->empty()) {
        const size_t end = keys ? 1 : text->find('\n');
        if (end == std::string::npos) {
            return true;
        }
        const std::string input = text->substr(0, end);
        if (!keys && !input.empty()) {
            printer.Line("> " + input, Colour::kBold);
        }
        text->erase(0, keys ? 1 : end + 1);
        if (!Obey(input == "\n" ? "" : input, terminal, printer)) {
            return false;
        }
    }
    return true;
}

}  // namespace

void RunInteractive(Terminal* terminal, const Printer& printer) {
    Help(printer);
    const SingleKeys keys;
    (void)signal(SIGINT, [](int) { interrupted = 1; });
    (void)signal(SIGTERM, [](int) { interrupted = 1; });
    std::string text;
    while (interrupted == 0) {
        if (!terminal->Pump(1000, STDIN_FILENO)) {
            continue;
        }
        std::array<char, 256> chunk = {};
        const ssize_t count = read(STDIN_FILENO, chunk.data(), chunk.size());
        if (count <= 0) {
            text += keys.Active() ? "" : "\n";
        } else {
            text.append(chunk.data(), static_cast<size_t>(count));
        }
        if (!ObeyAll(&text, keys.Active(), terminal, printer) || count <= 0) {
            return;
        }
    }
}

}  // namespace Simulator
