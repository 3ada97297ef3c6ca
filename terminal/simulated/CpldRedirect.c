/* Preloaded into the daemon: redirects opens of the board's watchdog files, which no host has, to
 * the simulated terminal's own. Other opens pass unchanged. Both call the kernel directly. */
#include "terminal/simulated/CpldRedirect.h"

#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static const char kBoard[] = "/proc/cpld/watchdog/";

long armings = 0;

/* Programs that the daemon starts must run without this library; a script that starts it does not
 * lose it. */
__attribute__((constructor)) static void LeaveTheEnvironment(void) {
    if (strcmp(program_invocation_short_name, "keldra_monitor") == 0) {
        unsetenv("LD_PRELOAD");
    }
}

int open(const char* path, int flags, ...) {
    char redirected[64] = SIMULATED_CPLD;
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = __OPEN_NEEDS_MODE(flags) ? (mode_t)va_arg(arguments, int) : 0;
    va_end(arguments);
    if (strncmp(path, kBoard, sizeof(kBoard) - 1) == 0) {
        const char* const name = path + sizeof(kBoard) - 1;
        armings += strcmp(name, "control-all") == 0;
        path = strncat(redirected, name, sizeof(redirected) - sizeof(SIMULATED_CPLD));
    }
    return (int)syscall(SYS_openat, AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));
