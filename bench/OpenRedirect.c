/* Preloaded into the daemon and into the program that it is measured beside: leads opens of the
 * board's watchdog files to the terminal's own. Unlike the simulator's library it reports nothing,
 * so no system call is added and the cost of a check is the daemon's. */
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static const char kBoard[] = "/proc/cpld/watchdog/";
static const char kSimulated[] = "/run/cpld/watchdog/";

/* What the daemon starts is to run without this library. */
__attribute__((constructor)) static void LeaveTheEnvironment(void) {
    unsetenv("LD_PRELOAD");
}

static int Open(const char* path, int flags, mode_t mode) {
    char redirected[64];
    const size_t prefix = sizeof(kBoard) - 1;
    if (strncmp(path, kBoard, prefix) == 0 && strlen(path) - prefix < 32) {
        memcpy(redirected, kSimulated, sizeof(kSimulated));
        strcat(redirected, path + prefix);
        path = redirected;
    }
    return (int)syscall(SYS_openat, AT_FDCWD, path, flags, mode);
}

static mode_t ModeOf(int flags, va_list* arguments) {
    const int wanted = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return wanted ? (mode_t)va_arg(*arguments, int) : 0;
}

#define DEFINE_OPEN(function)                          \
    int function(const char* path, int flags, ...) {   \
        va_list arguments;                             \
        va_start(arguments, flags);                    \
        const mode_t mode = ModeOf(flags, &arguments); \
        va_end(arguments);                             \
        return Open(path, flags, mode);                \
    }

DEFINE_OPEN(open)
DEFINE_OPEN(open64)

/* What a fortified program calls instead. */
int __open_2(const char* path, int flags);
int __open64_2(const char* path, int flags);
int __open_2(const char* path, int flags) {
    return Open(path, flags, 0);
}
int __open64_2(const char* path, int flags) {
    return Open(path, flags, 0);
}
