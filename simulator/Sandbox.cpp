#include "simulator/Sandbox.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>

#include "simulator/Command.h"
#include "simulator/TerminalLayout.h"

namespace fs = std::filesystem;

namespace Simulator {
namespace {

using Words = std::vector<std::string>;

constexpr char kAdvice[] =
    "\nThe simulated terminal needs bubblewrap (scripts/setup installs it) and a machine that "
    "permits"
    "\nmount and PID namespaces. Run as root, or let users make user namespaces (sysctl"
    "\nkernel.unprivileged_userns_clone=1, or on some systems"
    "\nkernel.apparmor_restrict_unprivileged_userns=0); a container needs CAP_SYS_ADMIN.";

void Add(Words* words, const Words& more) {
    words->insert(words->end(), more.begin(), more.end());
}

// Root of the machine needs no user namespace, anyone else is root in one of his own.
bool IsRoot() {
    return geteuid() == 0;
}

Words MachineParts() {
    Words words = {"--ro-bind", "/usr", "/usr", "--ro-bind", "/etc", "/etc"};
    for (const std::string path : {"/bin", "/sbin", "/lib", "/lib32", "/lib64", "/libx32"}) {
        std::error_code error;
        if (fs::is_symlink(path, error)) {
            Add(&words, {"--symlink", fs::read_symlink(path, error), path});
        } else {
            Add(&words, {"--ro-bind-try", path, path});
        }
    }
    Add(&words, {"--proc", "/proc", "--dev", "/dev", "--tmpfs", "/usr/sbin"});
    return words;
}

Words Bubblewrap(const std::string& firstProcess, const std::string& package) {
    Words words = {"bwrap", "--unshare-pid", "--as-pid-1", "--die-with-parent", "--info-fd", "1"};
    Add(&words,
        IsRoot() ? Words{"--cap-add", "ALL"} : Words{"--unshare-user", "--uid", "0", "--gid", "0"});
    Add(&words, MachineParts());
    for (const char* path :
         {"/var/run/quenda", "/sysopt/config/sat_router", "/sysopt/factory", kWatchdogFiles}) {
        Add(&words, {"--dir", path});
    }
    Add(&words, {"--perms", "1777", "--dir", "/tmp", "--ro-bind", firstProcess, kFirstProcess});
    if (!package.empty()) {
        for (const std::string path : {"/etc/init.d", "/etc/default"}) {
            Add(&words, {"--ro-bind", package + path, path});
        }
    }
    words.push_back(kFirstProcess);
    return words;
}

// What comes from `fd` until it contains `end` or is at its end itself.
std::string ReadUntil(int fd, const std::string& end) {
    std::string text;
    char byte = 0;
    while (text.find(end) == std::string::npos && read(fd, &byte, 1) == 1) {
        text += byte;
    }
    return text;
}

}  // namespace

bool Sandbox::Open(const std::string& firstProcess, const std::string& package,
                   std::string* reason) {
    int output[2] = {-1, -1};
    if (pipe2(output, O_CLOEXEC) == 0) {
        bubblewrap_ = Spawn(Bubblewrap(firstProcess, package), output[1]);
        (void)close(output[1]);
    }
    // First bubblewrap tells whom it started, then the first process that it runs.
    const std::string answer = bubblewrap_ > 0 ? ReadUntil(output[0], kFirstProcessRuns) : "";
    (void)close(output[0]);
    const size_t child = answer.find("\"child-pid\": ");
    const bool runs = answer.find(kFirstProcessRuns) != std::string::npos &&
                      child != std::string::npos &&
                      sscanf(answer.c_str() + child, "\"child-pid\": %d", &first_) == 1;
    if (!runs) {
        *reason = answer + kAdvice;
        Close();
    }
    return runs;
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

Words Sandbox::Enter(const Words& command) const {
    Words words = {"nsenter", "--target", std::to_string(first_), "--mount", "--pid"};
    if (!IsRoot()) {
        Add(&words, {"--user", "--preserve-credentials"});
    }
    // A signal to the command's process group is not to reach nsenter.
    Add(&words, {"--", "setsid"});
    Add(&words, command);
    return words;
}

std::string Sandbox::Path(const std::string& inside) const {
    return "/proc/" + std::to_string(first_) + "/root" + inside;
}

}  // namespace Simulator
