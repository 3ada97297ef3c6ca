#include "tests/support/Descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <climits>

std::map<int, std::string> OpenDescriptors() {
    std::map<int, std::string> open;
    for (int fd = 0; fd < 1024; ++fd) {
        if (fcntl(fd, F_GETFD) == -1) {
            continue;
        }
        char target[PATH_MAX] = "";
        const std::string link = "/proc/self/fd/" + std::to_string(fd);
        const ssize_t length = readlink(link.c_str(), target, sizeof(target));
        open[fd] = std::string(target, length > 0 ? static_cast<size_t>(length) : 0);
    }
    return open;
}
