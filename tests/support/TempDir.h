#pragma once

#include <string>

// A directory of the test's own, removed with everything in it at the end.
class TempDir {
public:
    TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir();

    const std::string& Path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }
    // Writes the file anew and returns its path.
    std::string Write(const std::string& name, const std::string& content) const;

private:
    std::string path_;
};

// The whole file; empty when it cannot be read.
std::string ReadFile(const std::string& path);
