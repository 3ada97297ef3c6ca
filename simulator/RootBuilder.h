#pragma once

#include <sys/types.h>

#include <string>

namespace Simulator {

// Builds a root file system in memory, from parts of the machine's own, and moves into it.
//
// To be used by the first process of a private mount namespace. Paths inside the new root are
// absolute. After the first failure every further operation does nothing and `Error` tells what
// failed, so that a caller can describe the whole root and ask once.
class RootBuilder {
public:
    RootBuilder();

    void Directory(const std::string& inside, mode_t mode = 0755);
    void Write(const std::string& inside, const std::string& content);
    // A program or library of the machine, copied.
    void Copy(const std::string& host, const std::string& inside);
    // A device of the machine.
    void Device(const std::string& path);
    // A directory of the machine under the same path, read-only. A symbolic link is copied, and
    // what the machine does not have is left out.
    void Share(const std::string& path);
    // The same for every entry of a directory but one.
    void ShareEntries(const std::string& path, const std::string& butNot);
    // Covers a directory that is there with the one of the same path in a tree of the machine.
    void Cover(const std::string& tree, const std::string& path);
    void Proc();

    // Makes the new root the root of this mount namespace and lets go of the old one.
    void MoveIn();

    const std::string& Error() const { return error_; }

private:
    std::string At(const std::string& inside) const;
    void Bind(const std::string& host, const std::string& inside);
    bool Ok() const { return error_.empty(); }
    void Check(bool done, const char* what, const std::string& path);

    std::string error_;
};

}  // namespace Simulator
