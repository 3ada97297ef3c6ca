/* Preloaded into the daemon together with CpldRedirect: reports each write to a control file of the
 * watchdog to the simulator. */
#include <stdio.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "terminal/simulated/CpldRedirect.h"
#include "terminal/standins/Announce.h"

ssize_t write(int fd, const void* buffer, size_t length) {
    const size_t prefix = sizeof(SIMULATED_CPLD) - 1;
    char link[64];
    char path[128] = "";
    char report[128];
    const ssize_t written = (ssize_t)syscall(SYS_write, fd, buffer, length);
    (void)snprintf(link, sizeof(link), "/proc/self/fd/%d", fd);
    if (written > 0 && readlink(link, path, sizeof(path) - 1) > 0 &&
        strncmp(path, SIMULATED_CPLD, prefix) == 0) {
        (void)snprintf(report, sizeof(report), "%s %.*s", path + prefix, (int)written,
                       (const char*)buffer);
        Announce("cpld", report);
    }
    return written;
}
