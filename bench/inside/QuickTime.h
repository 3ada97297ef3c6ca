#ifndef BENCH_INSIDE_QUICK_TIME_H
#define BENCH_INSIDE_QUICK_TIME_H

/* Each time after so many checks the daemon stops (SIGSTOP), so that its resources can be counted.
 * SIGCONT lets it go on. */
enum { kChecksBetweenStops = 1000 };

/* Keldra's heartbeat file for a daemon in quick time: a new count for every check. */
#define QUICK_HEARTBEAT_FILE "/tmp/quick.heartbeat"

#endif
