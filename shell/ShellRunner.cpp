#include "shell/ShellRunner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/buildinfo/MakeBuildRecord.h"
#include "core/signals/SignalWindow.h"
#include "core/text/FormatText.h"

namespace Quenda {

namespace {

constexpr size_t kChunk = 120;      // bytes read from the command at a time
constexpr int kMaxArguments = 30;   // passed to a program, argv[0] included
constexpr int kFirstInherited = 3;  // after the standard streams
constexpr int kLastInherited = 1023;

// In the child. Does not return.
[[noreturn]] void Exec(const int (&pipeFds)[2], const char* path, char* const* argv,
                       const char* shown) {
    RestoreSignalsInChild();
    (void)close(pipeFds[0]);
    (void)dup2(pipeFds[1], STDERR_FILENO);
    (void)dup2(pipeFds[1], STDOUT_FILENO);
    if (pipeFds[1] > STDERR_FILENO) {
        (void)close(pipeFds[1]);
    }
    (void)execv(path, argv);
    // Not stdio and exit: the buffers and the exit handlers belong to the parent.
    (void)dprintf(STDERR_FILENO, "Failed to exec \"%s\": %s\n", shown, strerror(errno));
    _exit(1);
}

// A command and the read end of the pipe for its output. The destructor waits for the command, even
// if memory runs out.
class RunningCommand {
public:
    RunningCommand(pid_t child, int outputFd) : child_(child), outputFd_(outputFd) {}
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;
    ~RunningCommand() {
        if (outputFd_ != -1) {
            int status = 0;
            (void)End(status);
        }
    }

    void ReadAll(std::string& output) const {
        char chunk[kChunk];
        for (;;) {
            const ssize_t count = ReadChunk(chunk);
            if (count > 0) {
                output.append(chunk, static_cast<size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                return;
            }
        }
    }

    // Closes the pipe and waits. False if the wait fails.
    bool End(int& status) {
        (void)close(std::exchange(outputFd_, -1));  // nothing was written
        return WaitForChild(child_, status);
    }

private:
    ssize_t ReadChunk(char (&chunk)[kChunk]) const {
        const SignalWindow window;
        return read(outputFd_, chunk, sizeof(chunk));
    }

    const pid_t child_;
    int outputFd_;
};

bool JudgeEnd(int status, std::string& output) {
    if (WIFEXITED(status)) {
        if (WEXITSTATUS(status) == 0) {
            return true;
        }
        output += FormatText("Shell command exited with code %d\n", WEXITSTATUS(status));
    } else if (WIFSIGNALED(status)) {
        output += FormatText("Shell Failed: Killed by signal %d\n", WTERMSIG(status));
    } else if (WIFSTOPPED(status)) {
        output += FormatText("Shell Failed: Stopped by signal %d\n", WSTOPSIG(status));
    }
    return false;
}

// The line that explains a failed exec names the command as `shown`.
bool Run(const char* path, char* const* argv, const char* shown, std::string& output) {
    int pipeFds[2];
    if (pipe(pipeFds) == -1) {
        output = FormatText("Shell Failed: Failed to create pipe: %s\n", strerror(errno));
        return false;
    }
    const pid_t child = fork();
    if (child == -1) {
        const int error = errno;
        (void)close(pipeFds[0]);
        (void)close(pipeFds[1]);
        output = FormatText("Shell Failed: Failed to create fork: %s\n", strerror(error));
        return false;
    }
    if (child == 0) {
        Exec(pipeFds, path, argv, shown);
    }
    (void)close(pipeFds[1]);
    RunningCommand command(child, pipeFds[0]);
    command.ReadAll(output);
    int status = 0;
    return command.End(status) && JudgeEnd(status, output);
}

}  // namespace

bool WaitForChild(pid_t child, int& status) {
    const SignalWindow window;
    while (waitpid(child, &status, 0) == -1) {
        if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

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
    int status = 0;
    {
        // SIGINT and SIGQUIT are lost while system(3) runs, as it ignores them.
        const SignalWindow window;
        status = system(command.c_str());
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;  // -1, for a failure, is no exit
}

void CloseInheritedDescriptors() {
    for (int fd = kFirstInherited; fd <= kLastInherited; ++fd) {
        (void)close(fd);  // most of them are not open
    }
}

const BuildRecord& ShellBuildRecord() {
    static const BuildRecord record = QUENDA_BUILD_RECORD("shell_runner");
    return record;
}

}  // namespace Quenda
