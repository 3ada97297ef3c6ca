/* Preloaded into the daemon together with CpldRedirect: time passes for it as quickly as it works.
 * A wait for the next check returns at once, and the daemon's clock moves forward by the
 * wait's length. The pause of a second after a signal to Keldra shrinks to a hundredth: Keldra
 * needs some time to end. */
#include "bench/inside/QuickTime.h"

#include <fcntl.h>
#include <signal.h>
#include <stdint.h>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include "terminal/simulated/CpldRedirect.h"

enum { kPauseMs = 10, kKernelMaskSize = 8 };

static int64_t aheadMs = 0;

int clock_gettime(clockid_t clock, struct timespec* now) {
    const int result = (int)syscall(SYS_clock_gettime, clock, now);
    if (clock == CLOCK_MONOTONIC_RAW) {
        const int64_t nanoseconds = now->tv_nsec + aheadMs % 1000 * 1000000;
        now->tv_sec += aheadMs / 1000 + nanoseconds / 1000000000;
        now->tv_nsec = nanoseconds % 1000000000;
    }
    return result;
}

int clock_nanosleep(clockid_t clock, int flags, const struct timespec* end, struct timespec* left) {
    const struct timespec pause = {.tv_nsec = kPauseMs * 1000000L};
    (void)clock;
    (void)flags;
    (void)end;
    (void)left;
    aheadMs += 99 * kPauseMs;
    return nanosleep(&pause, NULL);
}

static void BeatHeart(uint32_t count) {
    const int fd = open(QUICK_HEARTBEAT_FILE, O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    (void)!write(fd, &count, sizeof(count));
    (void)close(fd);
}

int epoll_pwait(int fd, struct epoll_event* events, int size, int timeout, const sigset_t* mask) {
    static long stoppedAt = 0;
    const long checks = armings - 1;
    if (checks % kChecksBetweenStops == 0 && checks != stoppedAt) {
        stoppedAt = checks;
        (void)kill(getpid(), SIGSTOP);
    }
    BeatHeart((uint32_t)checks + 1);
    /* The kernel ends a wait late rather than early. */
    aheadMs += timeout + 1;
    return (int)syscall(SYS_epoll_pwait, fd, events, size, 0, mask, kKernelMaskSize);
}
