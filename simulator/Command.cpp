#include "simulator/Command.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cstdio>

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

}  // namespace

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

std::string ReadAvailable(int fd) {
    std::string text;
    std::array<char, 4096> chunk = {};
    ssize_t count = 0;
    while ((count = read(fd, chunk.data(), chunk.size())) > 0) {
        text.append(chunk.data(), static_cast<size_t>(count));
    }
    return text;
}

}  // namespace Simulator
