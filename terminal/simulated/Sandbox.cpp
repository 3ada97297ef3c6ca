#include "terminal/simulated/Sandbox.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "terminal/TerminalLayout.h"

namespace Simulator {
namespace {

[[noreturn]] void Become(char** command, int output) {
    // A daemon built with sanitizers is to put up with a preloaded library and to leave its
    // reports behind.
    static const char* const kEnvironment[] = {
        "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
        "ASAN_OPTIONS=verify_asan_link_order=0:log_path=/tmp/sanitizer",
        "UBSAN_OPTIONS=print_stacktrace=1:log_path=/tmp/sanitizer", nullptr};
    (void)setsid();
    (void)!chdir("/");
    (void)dup2(open("/dev/null", O_RDONLY), 0);
    (void)dup2(output, 1);
    (void)dup2(output, 2);
    (void)close_range(3, ~0U, 0);
    // A limit of one byte is what keeps a crash in the terminal from the machine's own crash
    // handler; a limit of none would not.
    const rlimit noDump = {1, 1};
    (void)setrlimit(RLIMIT_CORE, &noDump);
    (void)execvpe(command[0], command, const_cast<char**>(kEnvironment));
    perror(command[0]);
    _exit(127);
}

// Starts a program of the machine in a session of its own, with the environment of a terminal and
// nothing of the simulator's open. Where there is no such program it ends with 127.
pid_t Spawn(const std::vector<std::string>& command, int output) {
    std::vector<char*> argv;
    for (const auto& word : command) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        Become(argv.data(), output);
    }
    return pid;
}

}  // namespace

bool Sandbox::Open(const std::vector<std::string>& boot, std::string* reason) {
    int output[2] = {-1, -1};
    if (pipe2(output, O_CLOEXEC) == 0) {
        bubblewrap_ = Spawn(boot, output[1]);
        (void)close(output[1]);
    }
    // First bubblewrap tells whom it started, then the first process that it runs.
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
    // A signal to the command's process group is not to reach nsenter.
    words.insert(words.end(), {"--", "setsid"});
    words.insert(words.end(), command.begin(), command.end());
    return Spawn(words, output);
}

std::string Sandbox::Path(const std::string& inside) const {
    return "/proc/" + std::to_string(first_) + "/root" + inside;
}

}  // namespace Simulator
