#ifndef BENCH_INSIDE_QUICK_TIME_H
#define BENCH_INSIDE_QUICK_TIME_H

/* After so many checks, and again after as many more, the daemon stops (SIGSTOP) for whoever looks
 * at what it holds; SIGCONT lets it go on. */
enum { kChecksBetweenStops = 1000 };

/* Keldra's heartbeat file for a daemon in quick time: a new count for every check. */
#define QUICK_HEARTBEAT_FILE "/tmp/quick.heartbeat"

#endif
