/* What the preloaded libraries share. */
#ifndef BENCH_INSIDE_OPEN_REDIRECT_H
#define BENCH_INSIDE_OPEN_REDIRECT_H

/* How often the watchdog was armed: once at the daemon's start and once by each check. */
extern long armings;

#endif
