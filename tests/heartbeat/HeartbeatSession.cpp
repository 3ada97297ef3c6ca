// Uses a heartbeat reader by commands of one or two words; tests/transcripts has a session with it.
// Each answer is the result and the state of the reader. Any other line is a command of the shell.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>

#include "core/log/Log.h"
#include "core/options/OptionsNodeEdit.h"
#include "core/timer/TimeKeeper.h"
#include "heartbeat/HeartbeatReadTimer.h"
#include "tests/support/CallbackTo.h"

using namespace Quenda;

namespace {

using Word = const std::string&;  // empty if it is not given

constexpr int kDescriptor = 20;  // of the heartbeat file, because all below are taken

// Refuses to start or to stop, as another kind of reader might.
struct Reader : HeartbeatReadTimer {
    bool Start() override { return refused != "start" && HeartbeatReadTimer::Start(); }
    bool Stop() override { return refused != "stop" && HeartbeatReadTimer::Stop(); }
    std::string refused;
};

Reader reader;

void Log(int level, const char* format, va_list arguments) {
    std::printf("log %d: ", level);
    std::vprintf(format, arguments);
}

// Sets a callback of that name; "once" clears itself.
bool Tell(Word name) {
    const auto callback = [name](bool result) {
        if (name == "once") {
            reader.ClearResultCallback();
        }
        std::printf("%s gets %s\n", name.c_str(), result ? "true" : "false");
    };
    reader.SetResultCallback(CallbackRef1<bool>(new CallbackTo<void(bool)>(callback)));
    return true;
}

bool Reload(Word timeout) {
    OptionsNodeEdit options;
    (void)options.SetLeaf("heartbeat_filename", "keldra.heartbeat", nullptr);
    (void)options.SetLeaf("heartbeat_timeout_sec", timeout.c_str(), nullptr);
    return reader.Reload(options);
}

// Fires the timer as often as it does up to that time, in seconds from now.
bool FireUntil(Word seconds) {
    const TimeValue now = TimeValue::Now();
    TimeKeeper::Instance().ProcessExpired({now.Seconds() + std::stoi(seconds), now.Nanoseconds()});
    return true;
}

const std::map<std::string, std::function<bool(Word)>> kCommands = {
    {"tell", Tell},
    {"reload", Reload},
    {"reload-number", [](Word) { return reader.Reload(OptionsNode(Json::Value(7))); }},
    {"fire-until", FireUntil},
    {"refuse", [](Word what) { return reader.refused = what, true; }},
    {"start", [](Word) { return reader.Start(); }},
    {"stop", [](Word) { return reader.Stop(); }},
    {"check-now", [](Word) { return reader.CheckNow(); }},
    {"next-below", [](Word s) { return reader.GetSecondsToNextCheck() < std::stoul(s); }},
    {"open", [](Word) { return reader.Open("Read"); }},
    {"close", [](Word) { return reader.Close("Read"); }},
    {"lose", [](Word) { return close(kDescriptor) == 0; }},
};

}  // namespace

int main() {
    while (open("/dev/null", O_RDONLY) < kDescriptor - 1) {
    }
    setlinebuf(stdout);
    CurrentLogHooks().levelled = Log;
    for (std::string line; std::getline(std::cin, line);) {
        std::printf("> %s\n", line.c_str());
        std::istringstream text(line);
        std::string command, word;
        text >> command >> word;
        const auto found = kCommands.find(command);
        if (found == kCommands.end()) {
            if (std::system(line.c_str()) != 0) {
                std::puts("failed");
            }
            continue;
        }
        const bool done = found->second(word);
        std::printf("%s: count %u after %u%s%s%s, %u s\n", done ? "true" : "false",
                    reader.GetLastCount(), reader.GetPreviousCount(),
                    reader.HeartbeatMissed() ? ", missed" : "",
                    reader.InErrorState() ? ", in error" : "", reader.IsActive() ? ", active" : "",
                    reader.GetTimeout());
    }
}
