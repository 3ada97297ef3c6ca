// Stands in for the terminal's main application: detaches, counts up the heartbeat, ends on
// SIGQUIT, and misbehaves when the simulator orders it to.
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>

#include "simulator/TerminalLayout.h"
#include "simulator/standins/Announce.h"
#include "simulator/standins/Detachment.h"

namespace {

using namespace Simulator;

constexpr int kRefused = 3;
constexpr timespec kPeriod = {0, 100000000};

enum class Order { kNone, kHang, kError, kShort, kMissing, kIgnore };

const struct {
    const char* word;
    Order order;
    const char* announcement;
} kOrders[] = {
    {"hang", Order::kHang, "hangs now"},
    {"error", Order::kError, "reports an error now: count 0"},
    {"short", Order::kShort, "writes a heartbeat file of 2 bytes now"},
    {"missing", Order::kMissing, "removes its heartbeat file now"},
    {"ignore", Order::kIgnore, "hangs now and ignores SIGQUIT"},
};

// The reason not to start, or "".
std::string Objection(const std::string& optionsFile, int* status) {
    *status = kRefused;
    if (std::ifstream(kKeldraRefuses) >> *status) {
        return "refuses to start";
    }
    if (!optionsFile.empty() && std::ifstream(optionsFile).get() != '{') {
        return "refuses to start with damaged options in " + optionsFile;
    }
    return "";
}

// Replaces the heartbeat file at once: a reader sees the old count or the new one.
void WriteHeartbeat(uint32_t count, size_t length) {
    const std::string fresh = std::string(kHeartbeatFile) + ".new";
    std::ofstream file(fresh, std::ios::binary);
    file.write(reinterpret_cast<const char*>(&count), static_cast<std::streamsize>(length));
    file.close();
    (void)rename(fresh.c_str(), kHeartbeatFile);
}

// The clock runs faster than any count, so a new Keldra never begins where an old one stopped.
uint32_t FirstCount() {
    timespec now = {};
    (void)clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1000000) | 1U;
}

// The simulator's order to this process, if there is a new one.
Order TakeOrder() {
    const std::string path = kKeldraOrder + std::to_string(getpid());
    std::string word;
    if (!(std::ifstream(path) >> word)) {
        return Order::kNone;
    }
    (void)unlink(path.c_str());
    for (const auto& known : kOrders) {
        if (word == known.word) {
            Announce("keldra", known.announcement);
            return known.order;
        }
    }
    return Order::kNone;
}

void Beat(Order order, uint32_t count) {
    switch (order) {
        case Order::kNone:
            WriteHeartbeat(count, sizeof(count));
            break;
        case Order::kError:
            WriteHeartbeat(0, sizeof(count));
            break;
        case Order::kShort:
            WriteHeartbeat(count, 2);
            break;
        case Order::kMissing:
            (void)unlink(kHeartbeatFile);
            break;
        case Order::kHang:
        case Order::kIgnore:
            break;
    }
}

// Waits one period. False when SIGQUIT came.
bool Sleep(const sigset_t& quit) {
    return sigtimedwait(&quit, nullptr, &kPeriod) != SIGQUIT;
}

}  // namespace

int main(int argc, char** argv) {
    sigset_t quit;
    sigemptyset(&quit);
    sigaddset(&quit, SIGQUIT);
    (void)sigprocmask(SIG_BLOCK, &quit, nullptr);
    const bool hasOptions = argc == 5 && strcmp(argv[3], "-cfg") == 0;
    const std::string optionsFile = hasOptions ? argv[4] : "";
    int status = 0;
    const std::string objection = Objection(optionsFile, &status);
    if (!objection.empty()) {
        Announce("keldra", objection);
        return status;
    }
    Detachment detachment;
    uint32_t count = FirstCount();
    Order order = Order::kNone;
    Beat(order, count);
    Announce("keldra", "is up" + (hasOptions ? ", options " + optionsFile : ""));
    detachment.Ready();
    while (Sleep(quit) || order == Order::kIgnore) {
        const Order fresh = TakeOrder();
        order = fresh == Order::kNone ? order : fresh;
        Beat(order, ++count);
    }
    Announce("keldra", "ends on SIGQUIT");
    return 0;
}
