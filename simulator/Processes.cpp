#include "simulator/Processes.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Simulator {

std::vector<Process> ListProcesses(const std::string& proc) {
    std::vector<Process> processes;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(proc, error)) {
        std::string line;
        std::getline(std::ifstream(entry.path() / "stat"), line);
        const size_t open = line.find('(');
        const size_t close = line.rfind(')');
        if (open == std::string::npos || close == std::string::npos) {
            continue;  // not a process, or one that has just gone
        }
        Process process;
        process.pid = static_cast<pid_t>(strtol(line.c_str(), nullptr, 10));
        process.name = line.substr(open + 1, close - open - 1);
        std::istringstream rest(line.substr(close + 1));
        rest >> process.state >> process.parent;
        processes.push_back(process);
    }
    std::sort(processes.begin(), processes.end(),
              [](const Process& a, const Process& b) { return a.pid < b.pid; });
    return processes;
}

}  // namespace Simulator
