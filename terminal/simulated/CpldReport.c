/* Preloaded into the daemon together with CpldRedirect: reports each write to a control file of the
 * watchdog to the simulator. */
#include <stdio.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include "terminal/simulated/CpldRedirect.h"

static void Report(const char* name, const void* text, size_t length) {
    char report[128];
    const int size =
        snprintf(report, sizeof(report), "watchdog %s %.*s", name, (int)length, (const char*)text);
    const struct sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = "/dev/log"};
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd >= 0) {
        (void)sendto(fd, report, (size_t)size, 0, (const struct sockaddr*)&address,
                     sizeof(address));
        (void)close(fd);
    }
}

ssize_t write(int fd, const void* buffer, size_t length) {
    const size_t prefix = sizeof(SIMULATED_CPLD) - 1;
    char link[64];
    char path[128] = "";
    const ssize_t written = (ssize_t)syscall(SYS_write, fd, buffer, length);
    (void)snprintf(link, sizeof(link), "/proc/self/fd/%d", fd);
    if (written > 0 && readlink(link, path, sizeof(path) - 1) > 0 &&
        strncmp(path, SIMULATED_CPLD, prefix) == 0) {
        Report(path + prefix, buffer, (size_t)written);
    }
    return written;
}
