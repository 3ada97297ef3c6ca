// A console on the core library: standard input is a handler of the event loop, and each line is a
// command. Give it a terminal or a pipe; epoll(7) refuses regular files.
#include <sys/epoll.h>
#include <unistd.h>

#include <cstdlib>
#include <iterator>
#include <sstream>
#include <vector>

#include "core/event/EventLoop.h"
#include "core/event/FileDescriptorHandler.h"
#include "core/log/TraceList.h"
#include "core/options/OptionsNodeEdit.h"
#include "core/output/StdioWritable.h"
#include "core/values/ValueList.h"

namespace {

constexpr char kUsage[] =
    "loop [COMMAND...] | later TURNS | sink LEVEL | trace LEVEL WORD\n"
    "values [COMMAND...] | enable-history 0|1 | load\n"
    "print [NAME...] | compact | set NAME VALUE [COMMENT] | merge NAME VALUE\n";

class Console : public Quenda::FileDescriptorHandler {
public:
    explicit Console(Quenda::EventLoop& loop)
        : FileDescriptorHandler("standard input", STDIN_FILENO, EPOLLIN), loop_(loop) {}
    // A handler of descriptor 0 does not leave the loop by itself.
    ~Console() override { (void)loop_.RemoveHandler(this); }

    // Takes one line, byte by byte. The next ones wait in the pipe until the loop has served its
    // timers and activities.
    void HandleRead() override {
        std::string line;
        char byte = 0;
        while (read(Fd(), &byte, 1) == 1 && byte != '\n') {
            line += byte;
        }
        Answer(line);
        if (byte != '\n') {
            loop_.Stop();  // at the end of the input
        }
    }
    void HandleWrite() override {}

private:
    void Answer(const std::string& line) {
        if (isatty(Fd()) == 0 && !line.empty()) {
            out_.Printf("> %s\n", line.c_str());  // as a terminal would show it
        }
        std::istringstream text(line);
        const std::vector<std::string> words{std::istream_iterator<std::string>(text), {}};
        std::vector<const char*> argv;
        for (const std::string& word : words) {
            argv.push_back(word.c_str());
        }
        options_.ClearError();
        if (!argv.empty() && words[0] != "#") {
            Run(words[0], static_cast<int>(argv.size()) - 1, argv.data() + 1);
        }
        if (!options_.Error().IsEmpty()) {
            out_.Printf("%s\n", options_.Error().Get());
        }
    }

    void Run(const std::string& command, int argc, const char* const* argv) {
        const auto is = [&](const char* word, int n) { return command == word && argc == n; };
        if (command == "loop") {
            loop_.DebugCommand(&out_, argc, argv);
        } else if (is("later", 1)) {
            turns_ = std::atoi(argv[0]);
            (void)loop_.AddActivity(&later_);
        } else if (is("sink", 1)) {
            Quenda::GlobalTraceList().AddSink(std::atoi(argv[0]), &out_);
        } else if (is("trace", 2)) {
            Quenda::GlobalTraceList().Trace(std::atoi(argv[0]), "%s\n", argv[1]);
        } else if (command == "values") {
            values_.Command(&out_, argc, argv);
        } else if (is("enable-history", 1)) {
            values_.EnableHistory(std::atoi(argv[0]) != 0);
        } else if (is("load", 0)) {
            (void)values_.Load(options_);
        } else if (command == "print") {
            options_.Print(&out_, Quenda::OptionsPath(argv, argv + argc));
        } else if (is("compact", 0)) {
            out_.Puts(options_.GetCompactText().Get());
        } else if (is("set", 2) || is("set", 3)) {
            (void)options_.SetLeaf(argv[0], argv[1], argc == 3 ? argv[2] : nullptr);
        } else if (is("merge", 2)) {
            Quenda::OptionsNodeEdit changes;
            (void)changes.SetLeaf(argv[0], std::atof(argv[1]), nullptr);
            (void)options_.Merge(changes, Quenda::OptionsNode());
        } else {
            out_.Puts(kUsage);
        }
    }

    bool CountDown(int /*unused*/) { return --turns_ <= 0; }

    Quenda::EventLoop& loop_;
    Quenda::StdioWritable out_{stdout};
    Quenda::ValueList values_{{Quenda::ValueDefinition::Text("band", "L"),
                               Quenda::ValueDefinition::Int("offset_hz", -150),
                               Quenda::ValueDefinition::UInt("power_mw", 200),
                               Quenda::ValueDefinition::Double("ratio", 0.5)}};
    Quenda::OptionsNodeEdit options_;
    int turns_ = 0;
    Quenda::ActivityHold later_{Quenda::MakeCallback(this, &Console::CountDown), "later"};
};

}  // namespace

int main() {
    setlinebuf(stdout);
    Quenda::EventLoop& loop = Quenda::EventLoop::Instance();
    Console console(loop);
    return loop.Init() && loop.AddHandler(&console) && loop.Run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
