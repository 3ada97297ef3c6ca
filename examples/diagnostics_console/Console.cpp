#include "examples/diagnostics_console/Console.h"

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr char kHelp[] =
    "loop [COMMAND...]     the event loop: its handlers, timers and activities\n"
    "values [COMMAND...]   this process's own figures, and their history\n"
    "options [COMMAND...]  a document to print, overlay and merge\n"
    "help                  this text\n"
    "quit                  ends the program, as the end of the input does\n";

std::vector<std::string> Words(const char* line) {
    std::istringstream text(line);
    std::vector<std::string> words;
    for (std::string word; text >> word;) {
        words.push_back(word);
    }
    return words;
}

}  // namespace

bool Console::Start() {
    return input_.Start(loop_);
}

void Console::OnLine(const char* line) {
    if (line == nullptr) {
        out_.Puts("End of the input.\n");
        Quit();
        return;
    }
    const std::vector<std::string> words = Words(line);
    std::vector<const char*> argv;
    for (const std::string& word : words) {
        argv.push_back(word.c_str());
    }
    if (!argv.empty()) {
        Run(static_cast<int>(argv.size()), argv.data());
    }
}

void Console::Run(int argc, const char* const* argv) {
    const auto is = [argv](const char* word) { return std::strcmp(argv[0], word) == 0; };
    if (is("loop")) {
        loop_.DebugCommand(&out_, argc - 1, argv + 1);
    } else if (is("values")) {
        figures_.Command(&out_, argc - 1, argv + 1);
    } else if (is("options")) {
        options_.Command(&out_, argc - 1, argv + 1);
    } else if (is("help")) {
        out_.Puts(kHelp);
    } else if (is("quit")) {
        Quit();
    } else {
        out_.Printf("There is no \"%s\"; \"help\" tells what there is.\n", argv[0]);
    }
}

void Console::Quit() {
    input_.Discard();
    loop_.Stop();
}
