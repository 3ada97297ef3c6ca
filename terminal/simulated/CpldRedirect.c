/* Preloaded into the daemon: gives it the board's watchdog files, which no workstation has.
 *
 * An open of a path in /proc/cpld/watchdog/ is led to a directory of the simulator's, and each
 * write to a file in there is reported to it. The calls go straight to the kernel, so nothing has
 * to be looked up, and everything else passes unchanged. */
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

static const char kBoard[] = "/proc/cpld/watchdog/";
static const char kSimulated[] = "/run/cpld/watchdog/";

/* What the daemon starts is to run without this library. */
__attribute__((constructor)) static void Prepare(void) {
    unsetenv("LD_PRELOAD");
}

/* The daemon's file offsets have 64 bits, so this is the only open that it calls. */
int open64(const char* path, int flags, ...) {
    char redirected[128];
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = __OPEN_NEEDS_MODE(flags) ? (mode_t)va_arg(arguments, int) : 0;
    va_end(arguments);
    if (strncmp(path, kBoard, sizeof(kBoard) - 1) == 0) {
        (void)snprintf(redirected, sizeof(redirected), "%s%s", kSimulated,
                       path + sizeof(kBoard) - 1);
        path = redirected;
    }
    return (int)syscall(SYS_openat, AT_FDCWD, path, flags | O_LARGEFILE, mode);
}

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
    char link[64];
    char path[128] = "";
    const ssize_t written = (ssize_t)syscall(SYS_write, fd, buffer, length);
    (void)snprintf(link, sizeof(link), "/proc/self/fd/%d", fd);
    if (written > 0 && readlink(link, path, sizeof(path) - 1) > 0 &&
        strncmp(path, kSimulated, sizeof(kSimulated) - 1) == 0) {
        Report(path + sizeof(kSimulated) - 1, buffer, (size_t)written);
    }
    return written;
}
