#include "simulator/RootBuilder.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace Simulator {
namespace {

// Every machine has this directory and none keeps programs in it. Covering it in a private mount
// namespace needs no directory of ours on the machine, so nothing can be left behind.
constexpr char kNewRoot[] = "/sys";

// The flags that a mount in a user namespace must keep when it becomes read-only.
unsigned long MountFlags(const std::string& path) {
    struct statvfs info = {};
    if (statvfs(path.c_str(), &info) != 0) {
        return 0;
    }
    unsigned long flags = 0;
    flags |= (info.f_flag & ST_NOSUID) != 0 ? MS_NOSUID : 0;
    flags |= (info.f_flag & ST_NODEV) != 0 ? MS_NODEV : 0;
    flags |= (info.f_flag & ST_NOEXEC) != 0 ? MS_NOEXEC : 0;
    flags |= (info.f_flag & ST_NOATIME) != 0 ? MS_NOATIME : 0;
    flags |= (info.f_flag & ST_NODIRATIME) != 0 ? MS_NODIRATIME : 0;
    flags |= (info.f_flag & ST_RELATIME) != 0 ? MS_RELATIME : 0;
    return flags;
}

}  // namespace

RootBuilder::RootBuilder() {
    Check(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "make private", "/");
    Check(Ok() && mount("terminal", kNewRoot, "tmpfs", MS_NOSUID, "mode=755") == 0, "mount",
          kNewRoot);
}

std::string RootBuilder::At(const std::string& inside) const {
    return kNewRoot + inside;
}

void RootBuilder::Check(bool done, const char* what, const std::string& path) {
    if (!done && Ok()) {
        error_ = std::string("cannot ") + what + " " + path + ": " + strerror(errno);
    }
}

void RootBuilder::Directory(const std::string& inside, mode_t mode) {
    std::error_code error;
    if (Ok()) {
        fs::create_directories(At(inside), error);
        Check(chmod(At(inside).c_str(), mode) == 0, "make", inside);
    }
}

void RootBuilder::Write(const std::string& inside, const std::string& content) {
    if (Ok()) {
        std::ofstream file(At(inside));
        file << content << std::flush;
        Check(file.good(), "write", inside);
    }
}

void RootBuilder::Copy(const std::string& host, const std::string& inside) {
    if (Ok()) {
        std::error_code error;
        const bool copied = fs::copy_file(host, At(inside), error);
        errno = error.value();
        Check(copied && chmod(At(inside).c_str(), 0755) == 0, "copy", host);
    }
}

void RootBuilder::Device(const std::string& path) {
    Write(path, "");
    Check(Ok() && mount(path.c_str(), At(path).c_str(), nullptr, MS_BIND, nullptr) == 0, "share",
          path);
}

void RootBuilder::Share(const std::string& path) {
    std::error_code error;
    if (!Ok() || !fs::exists(fs::symlink_status(path, error))) {
        return;
    }
    if (fs::is_symlink(path, error)) {
        const fs::path target = fs::read_symlink(path, error);
        Check(symlink(target.c_str(), At(path).c_str()) == 0, "link", path);
        return;
    }
    Directory(path);
    Bind(path, path);
}

void RootBuilder::Bind(const std::string& host, const std::string& inside) {
    const std::string target = At(inside);
    Check(Ok() && mount(host.c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0,
          "share", host);
    const unsigned long flags = MS_REMOUNT | MS_BIND | MS_RDONLY | MountFlags(target);
    Check(Ok() && mount(nullptr, target.c_str(), nullptr, flags, nullptr) == 0, "protect", inside);
}

void RootBuilder::ShareEntries(const std::string& path, const std::string& butNot) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(path, error)) {
        if (entry.path().filename() != butNot) {
            Share(entry.path());
        }
    }
}

void RootBuilder::Cover(const std::string& tree, const std::string& path) {
    Bind(tree + path, path);
}

void RootBuilder::Proc() {
    Directory("/proc", 0555);
    Check(Ok() && mount("proc", At("/proc").c_str(), "proc", 0, nullptr) == 0, "mount", "/proc");
}

void RootBuilder::MoveIn() {
    // The old root is stacked on the new one for a moment and then taken off.
    Check(Ok() && chdir(kNewRoot) == 0 && syscall(SYS_pivot_root, ".", ".") == 0 &&
              umount2(".", MNT_DETACH) == 0 && chdir("/") == 0,
          "move into", kNewRoot);
}

}  // namespace Simulator
