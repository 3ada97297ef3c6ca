#include "bench/SystemCalls.h"

#include <fstream>
#include <regex>

#include "bench/Report.h"

namespace Bench {

namespace {

// Long enough for two whole checks.
const std::string kTrace = "timeout 3.5 strace -a 1 -s 0 -o /tmp/trace -p ";

// Without the descriptors: the first argument, and what an open returns.
std::string WithoutDescriptors(const std::string& line) {
    static const std::regex argument(R"(^(\w+)\(\d+)");
    static const std::regex opened(R"(^(openat.*) += \d+$)");
    return std::regex_replace(std::regex_replace(line, argument, "$1("), opened, "$1");
}

}  // namespace

std::vector<std::string> TraceOneCheck(BenchTerminal& bench, pid_t pid) {
    const auto result = bench.Terminal().Run(kTrace + std::to_string(pid));
    std::ifstream trace(bench.Terminal().Path("/tmp/trace"));
    std::vector<std::string> check;
    std::vector<std::string> whole;
    bool waited = false;
    for (std::string line; std::getline(trace, line);) {
        if (line.rfind("epoll_pwait", 0) != 0) {
            check.push_back(WithoutDescriptors(line));
            continue;
        }
        // Lines before the first wait are the end of a check. strace may print a wait as two lines.
        if (waited && !check.empty()) {
            whole = check;
        }
        waited = true;
        check.clear();
    }
    if (whole.empty()) {
        Fail("no check has been traced: " + result.output);
    }
    return whole;
}

}  // namespace Bench
