/* Preloaded into the daemon: gives it the board's watchdog files, which no workstation has.
 *
 * An open of a path in /proc/cpld/watchdog/ is led to a directory of the simulator's, and each
 * write to such a file is reported to it. The calls go straight to the kernel, so nothing has to
 * be looked up, and everything else passes unchanged. */
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/un.h>
#include <unistd.h>

enum { kDescriptors = 1024, kNameSize = 32 };

static const char kBoard[] = "/proc/cpld/watchdog/";
static const char kSimulated[] = "/run/cpld/watchdog/";

/* The name of the control file behind each descriptor, empty for all others. */
static char names[kDescriptors][kNameSize];

__attribute__((constructor)) static void Prepare(void) {
    /* What the daemon starts is to run without this library. */
    unsetenv("LD_PRELOAD");
}

static int Open(int directory, const char* path, int flags, mode_t mode) {
    char redirected[128];
    const char* name = NULL;
    if (path != NULL && strncmp(path, kBoard, sizeof(kBoard) - 1) == 0) {
        name = path + sizeof(kBoard) - 1;
        (void)snprintf(redirected, sizeof(redirected), "%s%s", kSimulated, name);
        path = redirected;
    }
    const int fd = (int)syscall(SYS_openat, directory, path, flags, mode);
    if (fd >= 0 && fd < kDescriptors) {
        (void)snprintf(names[fd], kNameSize, "%s", name != NULL ? name : "");
    }
    return fd;
}

static mode_t ModeOf(int flags, va_list* arguments) {
    const int wanted = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return wanted ? (mode_t)va_arg(*arguments, int) : 0;
}

#define DEFINE_OPEN(function, extraFlags)                        \
    int function(const char* path, int flags, ...) {             \
        va_list arguments;                                       \
        va_start(arguments, flags);                              \
        const mode_t mode = ModeOf(flags, &arguments);           \
        va_end(arguments);                                       \
        return Open(AT_FDCWD, path, flags | (extraFlags), mode); \
    }

#define DEFINE_OPENAT(function, extraFlags)                         \
    int function(int directory, const char* path, int flags, ...) { \
        va_list arguments;                                          \
        va_start(arguments, flags);                                 \
        const mode_t mode = ModeOf(flags, &arguments);              \
        va_end(arguments);                                          \
        return Open(directory, path, flags | (extraFlags), mode);   \
    }

DEFINE_OPEN(open, 0)
DEFINE_OPEN(open64, O_LARGEFILE)
DEFINE_OPENAT(openat, 0)
DEFINE_OPENAT(openat64, O_LARGEFILE)

/* What a fortified program calls instead. */
int __open_2(const char* path, int flags);
int __open64_2(const char* path, int flags);
int __open_2(const char* path, int flags) {
    return Open(AT_FDCWD, path, flags, 0);
}
int __open64_2(const char* path, int flags) {
    return Open(AT_FDCWD, path, flags | O_LARGEFILE, 0);
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
        (void)syscall(SYS_close, fd);
    }
}

ssize_t write(int fd, const void* buffer, size_t length) {
    const ssize_t written = (ssize_t)syscall(SYS_write, fd, buffer, length);
    if (written > 0 && fd >= 0 && fd < kDescriptors && names[fd][0] != '\0') {
        Report(names[fd], buffer, (size_t)written);
    }
    return written;
}

int close(int fd) {
    if (fd >= 0 && fd < kDescriptors) {
        names[fd][0] = '\0';
    }
    return (int)syscall(SYS_close, fd);
}
