// How the simulator runs something inside its terminal.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "simulator/Namespaces.h"
#include "simulator/SimulatedTerminal.h"

namespace Simulator {
namespace {

// The process that works inside: nothing of the simulator's stays open in it.
[[noreturn]] void Work(int output, const std::function<int()>& work) {
    (void)setsid();
    (void)!chdir("/");
    (void)dup2(open("/dev/null", O_RDONLY), 0);
    (void)dup2(output, 1);
    (void)dup2(output, 2);
    (void)close_range(3, ~0U, 0);
    // A limit of one byte is what keeps a crash in here from the machine's own crash handler; a
    // limit of none would not.
    const rlimit noDump = {1, 1};
    (void)setrlimit(RLIMIT_CORE, &noDump);
    _exit(work());
}

// The process between: it enters the namespaces, and reports how the one inside ended.
[[noreturn]] void Enter(pid_t init, int output, int report, const std::function<int()>& work) {
    int status = -1;
    if (JoinNamespaces(init)) {
        const pid_t pid = fork();
        if (pid == 0) {
            Work(output, work);
        }
        if (waitpid(pid, &status, 0) != pid) {
            status = -1;
        }
    }
    (void)!write(report, &status, sizeof(status));
    _exit(0);
}

void Append(int fd, std::string* text) {
    std::array<char, 4096> chunk = {};
    ssize_t count = 0;
    while ((count = read(fd, chunk.data(), chunk.size())) > 0) {
        text->append(chunk.data(), static_cast<size_t>(count));
    }
}

}  // namespace

CommandResult SimulatedTerminal::Inside(const std::function<int()>& work) {
    CommandResult result;
    int output[2] = {-1, -1};
    int report[2] = {-1, -1};
    if (pipe2(output, O_CLOEXEC | O_NONBLOCK) != 0 || pipe2(report, O_CLOEXEC) != 0) {
        return result;
    }
    (void)fcntl(output[1], F_SETFL, 0);  // the command's end waits, ours does not
    const pid_t between = fork();
    if (between == 0) {
        Enter(init_, output[1], report[1], work);
    }
    (void)close(output[1]);
    (void)close(report[1]);
    // What the command left running may keep its output open: its end is what counts.
    while (!Pump(20, report[0])) {
        Append(output[0], &result.output);
    }
    if (read(report[0], &result.status, sizeof(result.status)) != sizeof(result.status)) {
        result.status = -1;
    }
    Append(output[0], &result.output);
    (void)close(output[0]);
    (void)close(report[0]);
    (void)waitpid(between, nullptr, 0);
    return result;
}

}  // namespace Simulator
