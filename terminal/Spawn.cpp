#include "terminal/Spawn.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace Terminals {
namespace {

[[noreturn]] void Become(char** command, int output, int input, pid_t parent) {
    // A daemon built with sanitizers must accept a preloaded library and leave its reports in
    // files.
    static const char* const kEnvironment[] = {
        "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
        "ASAN_OPTIONS=verify_asan_link_order=0:log_path=/tmp/sanitizer",
        "UBSAN_OPTIONS=print_stacktrace=1:log_path=/tmp/sanitizer", nullptr};
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(1);
    }
    (void)setsid();
    (void)!chdir("/");
    (void)dup2(input >= 0 ? input : open("/dev/null", O_RDONLY), 0);
    (void)dup2(output, 1);
    (void)dup2(output, 2);
    (void)close_range(3, ~0U, 0);
    // With a limit of one byte, a crash in the terminal does not reach the crash handler of the
    // host. With a limit of zero it does.
    const rlimit noDump = {1, 1};
    (void)setrlimit(RLIMIT_CORE, &noDump);
    (void)execvpe(command[0], command, const_cast<char**>(kEnvironment));
    perror(command[0]);
    _exit(127);
}

}  // namespace

pid_t Spawn(const std::vector<std::string>& command, int output, int input) {
    std::vector<char*> argv;
    for (const auto& word : command) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);
    const pid_t self = getpid();
    const pid_t pid = fork();
    if (pid == 0) {
        Become(argv.data(), output, input, self);
    }
    return pid;
}

}  // namespace Terminals
