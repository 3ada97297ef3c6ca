// Stands in for the terminal's main application: detaches, counts up the heartbeat, ends on
// SIGQUIT, and misbehaves if the simulator orders it to.
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

#include "terminal/TerminalLayout.h"
#include "terminal/standins/Announce.h"

namespace {

using namespace Terminals;

// Short, so that the count mostly changes even between an overdue check and the next one.
constexpr timespec kPeriod = {0, 20000000};

const struct {
    const char* order;
    const char* announcement;
} kOrders[] = {
    {"hang", "hangs now"},
    {"error", "reports an error now: count 0"},
    {"short", "writes a heartbeat file of 2 bytes now"},
    {"missing", "removes its heartbeat file now"},
    {"ignore", "hangs now and ignores SIGQUIT"},
};

// Returns the reason for which this Keldra refuses to start, or "".
std::string Objection(const std::string& optionsFile) {
    if (std::ifstream(kKeldraRefuses).get() != EOF) {
        return "refuses to start";
    }
    const bool isDamaged = !optionsFile.empty() && std::ifstream(optionsFile).get() != '{';
    return isDamaged ? "refuses to start with damaged options in " + optionsFile : "";
}

// Replaces the heartbeat file by a rename: a reader sees the old count or the new one.
void WriteHeartbeat(uint32_t count, std::streamsize length) {
    const std::string fresh = std::string(kHeartbeatFile) + ".new";
    std::ofstream(fresh, std::ios::binary).write(reinterpret_cast<const char*>(&count), length);
    (void)rename(fresh.c_str(), kHeartbeatFile);
}

// Reads a new order for this process; without one, the last order stays in force.
void TakeOrder(std::string* order) {
    const std::string path = kKeldraOrder + std::to_string(getpid());
    std::string word;
    if (!(std::ifstream(path) >> word)) {
        return;
    }
    (void)unlink(path.c_str());
    for (const auto& known : kOrders) {
        if (word == known.order) {
            Announce("keldra", known.announcement);
            *order = word;
        }
    }
}

void Beat(const std::string& order, uint32_t count) {
    if (order.empty() || order == "error") {
        WriteHeartbeat(order.empty() ? count : 0, sizeof(count));
    } else if (order == "short") {
        WriteHeartbeat(count, 2);
    } else if (order == "missing") {
        (void)unlink(kHeartbeatFile);
    }
}

}  // namespace

int main(int argc, char** argv) {
    sigset_t quit;
    sigemptyset(&quit);
    sigaddset(&quit, SIGQUIT);
    (void)sigprocmask(SIG_BLOCK, &quit, nullptr);
    while (std::ifstream(kKeldraWaits).get() != EOF) {
        (void)usleep(10000);
    }
    // keldra -cp 23 [-cfg FILE]
    const std::string optionsFile = argc == 5 ? argv[4] : "";
    const std::string objection = Objection(optionsFile);
    if (!objection.empty()) {
        Announce("keldra", objection.c_str());
        return 3;
    }
    Announce("keldra", (optionsFile.empty() ? "is up" : "is up, options " + optionsFile).c_str());
    // Each Keldra has different counts.
    uint32_t count = static_cast<uint32_t>(getpid()) * 100000;
    std::string order;
    Beat(order, count);
    if (daemon(0, 0) != 0) {
        return 4;
    }
    while (sigtimedwait(&quit, nullptr, &kPeriod) != SIGQUIT || order == "ignore") {
        TakeOrder(&order);
        Beat(order, ++count);
    }
    Announce("keldra", "ends on SIGQUIT");
    return 0;
}
