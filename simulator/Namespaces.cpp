#include "simulator/Namespaces.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace Simulator {
namespace {

constexpr int kNamespaces = CLONE_NEWNS | CLONE_NEWPID;

// Like fork, with namespaces: the child goes on here with a copy of everything.
pid_t ForkWith(int flags) {
    const auto both = static_cast<unsigned long>(flags) | static_cast<unsigned long>(SIGCHLD);
    return static_cast<pid_t>(syscall(SYS_clone, both, nullptr, nullptr, nullptr, nullptr));
}

bool WriteProc(pid_t pid, const char* name, const std::string& text) {
    const std::string path = "/proc/" + std::to_string(pid) + "/" + name;
    const int fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
        return false;
    }
    const bool ok = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    const int error = errno;
    (void)close(fd);
    errno = error;
    return ok;
}

// Makes the caller's user and group root in the user namespace of `pid`.
bool MapCallerToRoot(pid_t pid) {
    return WriteProc(pid, "setgroups", "deny") &&
           WriteProc(pid, "uid_map", "0 " + std::to_string(geteuid()) + " 1") &&
           WriteProc(pid, "gid_map", "0 " + std::to_string(getegid()) + " 1");
}

// The child of CloneIntoNamespaces: waits for the word of its parent, which maps the users first.
[[noreturn]] void BeFirstProcess(int word, const std::function<void()>& firstProcess) {
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    (void)setsid();
    char go = 0;
    if (read(word, &go, 1) == 1) {
        (void)close(word);
        firstProcess();
    }
    _exit(1);
}

bool SameNamespace(int a, int b) {
    struct stat sa = {};
    struct stat sb = {};
    return fstat(a, &sa) == 0 && fstat(b, &sb) == 0 && sa.st_ino == sb.st_ino;
}

}  // namespace

pid_t CloneIntoNamespaces(const std::function<void()>& firstProcess, std::string* reason) {
    int word[2] = {-1, -1};
    if (pipe2(word, O_CLOEXEC) != 0) {
        *reason = std::string("no pipe: ") + strerror(errno);
        return -1;
    }
    bool ownUsers = false;
    pid_t pid = ForkWith(kNamespaces);
    if (pid < 0 && errno == EPERM) {
        ownUsers = true;
        pid = ForkWith(kNamespaces | CLONE_NEWUSER);
    }
    if (pid == 0) {
        (void)close(word[1]);
        BeFirstProcess(word[0], firstProcess);
    }
    const bool ok = pid > 0 && (!ownUsers || MapCallerToRoot(pid)) && write(word[1], "g", 1) == 1;
    if (!ok) {
        *reason = std::string("no namespaces: ") + strerror(errno);
    }
    (void)close(word[0]);
    (void)close(word[1]);
    if (!ok && pid > 0) {
        (void)waitpid(pid, nullptr, 0);
    }
    return ok ? pid : -1;
}

bool JoinNamespaces(pid_t pid) {
    const std::string directory = "/proc/" + std::to_string(pid) + "/ns/";
    const int own = open("/proc/self/ns/user", O_RDONLY | O_CLOEXEC);
    const int users = open((directory + "user").c_str(), O_RDONLY | O_CLOEXEC);
    const int processes = open((directory + "pid").c_str(), O_RDONLY | O_CLOEXEC);
    const int mounts = open((directory + "mnt").c_str(), O_RDONLY | O_CLOEXEC);
    // Joining the user namespace that one is in already is an error.
    return (SameNamespace(own, users) || setns(users, CLONE_NEWUSER) == 0) &&
           setns(processes, CLONE_NEWPID) == 0 && setns(mounts, CLONE_NEWNS) == 0;
}

bool NamespacesPermitted(std::string* reason) {
    const auto tryMounts = [] {
        const bool ok = mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                        mount("probe", "/sys", "tmpfs", 0, nullptr) == 0 &&
                        mount("proc", "/sys", "proc", 0, nullptr) == 0;
        _exit(ok ? 0 : errno);
    };
    const pid_t pid = CloneIntoNamespaces(tryMounts, reason);
    int status = 0;
    if (pid > 0 && waitpid(pid, &status, 0) == pid && status == 0) {
        return true;
    }
    if (pid > 0) {
        *reason = std::string("no private mounts: ") + strerror(WEXITSTATUS(status));
    }
    *reason +=
        "\nThis machine does not permit mount and PID namespaces here. Run as root, or let users"
        "\nmake user namespaces (sysctl kernel.unprivileged_userns_clone=1, or on some systems"
        "\nkernel.apparmor_restrict_unprivileged_userns=0); a container needs CAP_SYS_ADMIN.";
    return false;
}

}  // namespace Simulator
