#pragma once

#include <string>

// Redirects a descriptor (1 or 2) of this process into a file until `Stop`, which returns what
// was written to it, by this process or a child.
class Capture {
public:
    explicit Capture(int fd);
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;
    ~Capture();

    std::string Stop();

private:
    int fd_;
    int saved_;
    int file_;
};
