#include "tests/support/Descriptors.h"

#include <unistd.h>

#include <climits>

std::map<int, std::string> OpenDescriptors() {
    std::map<int, std::string> open;
    for (int fd = 0; fd < 1024; ++fd) {
        char target[PATH_MAX] = "";
        const std::string link = "/proc/self/fd/" + std::to_string(fd);
        if (readlink(link.c_str(), target, sizeof(target) - 1) != -1) {
            open[fd] = target;
        }
    }
    return open;
}
