#include "terminal/simulated/Sandbox.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "terminal/Spawn.h"
#include "terminal/TerminalLayout.h"

namespace Terminals::Simulated {

bool Sandbox::Open(const std::vector<std::string>& boot, std::string* reason) {
    int output[2] = {-1, -1};
    if (pipe2(output, O_CLOEXEC) == 0) {
        bubblewrap_ = Spawn(boot, output[1]);
        (void)close(output[1]);
    }
    // First bubblewrap writes the PID of the process that it has started; then that process writes.
    std::string answer;
    char byte = 0;
    while (answer.find(kFirstProcessRuns) == std::string::npos && read(output[0], &byte, 1) == 1) {
        answer += byte;
    }
    (void)close(output[0]);
    const size_t child = answer.find("\"child-pid\": ");
    if (child == std::string::npos || answer.find(kFirstProcessRuns) == std::string::npos ||
        sscanf(answer.c_str() + child, "\"child-pid\": %d", &first_) != 1) {
        *reason = answer;
        Close();
        return false;
    }
    return true;
}

void Sandbox::Close() {
    if (bubblewrap_ > 0) {
        // The kernel kills everything else inside before bubblewrap sees its child's end.
        (void)kill(first_ > 0 ? first_ : bubblewrap_, SIGKILL);
        (void)waitpid(bubblewrap_, nullptr, 0);
    }
    bubblewrap_ = -1;
    first_ = -1;
}

pid_t Sandbox::Start(const std::vector<std::string>& command, int output) const {
    std::vector<std::string> words = {"nsenter", "--target", std::to_string(first_), "--mount",
                                      "--pid"};
    if (geteuid() != 0) {
        words.insert(words.end(), {"--user", "--preserve-credentials"});
    }
    // A signal to the command's process group must not reach nsenter.
    words.insert(words.end(), {"--", "setsid"});
    words.insert(words.end(), command.begin(), command.end());
    return Spawn(words, output);
}

std::string Sandbox::Path(const std::string& inside) const {
    return "/proc/" + std::to_string(first_) + "/root" + inside;
}

}  // namespace Terminals::Simulated
