#include "shell/ShellRunner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace Quenda {

namespace {

constexpr size_t kChunk = 120;      // bytes read from the command at a time
constexpr int kMaxArguments = 30;   // passed to a program, argv[0] included
constexpr int kFirstInherited = 3;  // after the standard streams
constexpr int kLastInherited = 1023;

// Appended in place: a caller that has reserved room for the output sees no allocation.
void AppendLine(std::string& output, const char* text, const char* detail) {
    output.append(text).append(detail).append("\n");
}

void AppendLine(std::string& output, const char* text, int number) {
    AppendLine(output, text, std::to_string(number).c_str());
}

// In the child. Does not return.
[[noreturn]] void Exec(const int (&pipeFds)[2], const char* path, char* const* argv,
                       const char* shown) {
    (void)close(pipeFds[0]);
    (void)dup2(pipeFds[1], STDERR_FILENO);
    (void)dup2(pipeFds[1], STDOUT_FILENO);
    if (pipeFds[1] > STDERR_FILENO) {
        (void)close(pipeFds[1]);
    }
    (void)execv(path, argv);
    // Not stdio: its buffers and the exit handlers are the parent's own.
    (void)dprintf(STDERR_FILENO, "Failed to exec \"%s\": %s\n", shown, strerror(errno));
    _exit(1);
}

void ReadAll(int fd, std::string& output) {
    char chunk[kChunk];
    for (;;) {
        const ssize_t count = read(fd, chunk, sizeof(chunk));
        if (count > 0) {
            output.append(chunk, static_cast<size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return;
        }
    }
}

bool WaitFor(pid_t child, std::string& output) {
    int status = 0;
    while (waitpid(child, &status, 0) == -1) {
        if (errno != EINTR) {
            return false;
        }
    }
    if (WIFEXITED(status)) {
        if (WEXITSTATUS(status) == 0) {
            return true;
        }
        AppendLine(output, "Shell command exited with code ", WEXITSTATUS(status));
    } else if (WIFSIGNALED(status)) {
        AppendLine(output, "Shell Failed: Killed by signal ", WTERMSIG(status));
    } else if (WIFSTOPPED(status)) {
        AppendLine(output, "Shell Failed: Stopped by signal ", WSTOPSIG(status));
    }
    return false;
}

// `shown` names the command in the line that explains a failed exec.
bool Run(const char* path, char* const* argv, const char* shown, std::string& output) {
    int pipeFds[2];
    if (pipe(pipeFds) == -1) {
        output.clear();
        AppendLine(output, "Shell Failed: Failed to create pipe: ", strerror(errno));
        return false;
    }
    const pid_t child = fork();
    if (child == -1) {
        output.clear();
        AppendLine(output, "Shell Failed: Failed to create fork: ", strerror(errno));
        (void)close(pipeFds[0]);
        (void)close(pipeFds[1]);
        return false;
    }
    if (child == 0) {
        Exec(pipeFds, path, argv, shown);
    }
    (void)close(pipeFds[1]);
    ReadAll(pipeFds[0], output);
    (void)close(pipeFds[0]);
    return WaitFor(child, output);
}

}  // namespace

bool RunShellCommand(const std::string& command, std::string& output) {
    if (command.empty()) {
        return false;
    }
    char shell[] = "/bin/sh";
    char option[] = "-c";
    char* const argv[] = {shell, option, const_cast<char*>(command.c_str()), nullptr};
    return Run(shell, argv, command.c_str(), output);
}

bool RunExecCommand(const std::string& path, int argc, const char* const* argv,
                    std::string& output) {
    char* copy[kMaxArguments + 1] = {};
    std::transform(argv, argv + std::clamp(argc, 0, kMaxArguments), copy,
                   [](const char* argument) { return const_cast<char*>(argument); });
    return Run(path.c_str(), copy, path.c_str(), output);
}

bool RunSystemCommand(const std::string& command) {
    if (command.empty()) {
        return false;
    }
    const int status = system(command.c_str());
    return status != -1 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void CloseInheritedDescriptors() {
    for (int fd = kFirstInherited; fd <= kLastInherited; ++fd) {
        (void)close(fd);  // most of them are not open
    }
}

}  // namespace Quenda
