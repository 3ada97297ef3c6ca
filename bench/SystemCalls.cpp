#include "bench/SystemCalls.h"

#include <unistd.h>

#include <fstream>
#include <regex>

namespace Bench {

namespace {

constexpr char kStrace[] = "/usr/bin/strace";
constexpr char kTraceFile[] = "/tmp/trace";
constexpr char kSeconds[] = "3.5";  // at least two whole checks

// What makes a call the same call: its name, the flags of an open, the bytes moved.
std::string Canonical(const std::string& line) {
    static const std::regex open(R"re(^openat\([^,]*, ("[^"]*", [A-Z_|]*).*)re");
    static const std::regex transfer(R"re(^(read|write)\(\d+, .*\) += (-?\d+).*)re");
    static const std::regex other(R"re(^(\w+)\(.*)re");
    std::smatch match;
    if (std::regex_match(line, match, open)) {
        return "openat " + match[1].str();
    }
    if (std::regex_match(line, match, transfer)) {
        return match[1].str() + " " + match[2].str();
    }
    return std::regex_match(line, match, other) ? match[1].str() : "";
}

}  // namespace

std::vector<std::string> TraceOneCheck(BenchTerminal& bench, pid_t pid) {
    if (access(kStrace, X_OK) != 0) {
        return {};
    }
    (void)bench.Terminal().Run(
        {"/usr/bin/timeout", kSeconds, kStrace, "-o", kTraceFile, "-p", std::to_string(pid)});
    std::ifstream trace(bench.Terminal().Path(kTraceFile));
    std::vector<std::string> check;
    std::vector<std::string> whole;
    std::string line;
    bool waited = false;
    while (std::getline(trace, line)) {
        const std::string call = Canonical(line);
        if (call != "epoll_pwait") {
            check.push_back(call);
            continue;
        }
        // What came before the first wait is the tail of a check, and a wait may come in two.
        if (waited && !check.empty()) {
            whole = check;
        }
        waited = true;
        check.clear();
    }
    return whole;
}

}  // namespace Bench
