/* Preloaded into the daemon and into the program that it is measured beside: leads opens of the
 * board's watchdog files to the terminal's own. Unlike the simulator's library it reports nothing,
 * so no system call is added and the cost of a check is the daemon's. */
#include "bench/inside/OpenRedirect.h"

#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static const char kBoard[] = "/proc/cpld/watchdog/";
static const char kSimulated[] = "/run/cpld/watchdog/";

long armings = 0;

/* What the daemon starts is to run without this library. */
__attribute__((constructor)) static void LeaveTheEnvironment(void) {
    unsetenv("LD_PRELOAD");
}

int open(const char* path, int flags, ...) {
    char redirected[64] = "";
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? (mode_t)va_arg(arguments, int) : 0;
    va_end(arguments);
    const size_t prefix = sizeof(kBoard) - 1;
    if (strncmp(path, kBoard, prefix) == 0) {
        strcat(redirected, kSimulated);
        strncat(redirected, path + prefix, sizeof(redirected) - sizeof(kSimulated));
        path = redirected;
        armings += strcmp(path + sizeof(kSimulated) - 1, "control-all") == 0;
    }
    return (int)syscall(SYS_openat, AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));
