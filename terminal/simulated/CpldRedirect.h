/* Shared by the parts of a preloaded library. */
#ifndef TERMINAL_SIMULATED_CPLD_REDIRECT_H
#define TERMINAL_SIMULATED_CPLD_REDIRECT_H

/* The simulated terminal's own control files of the watchdog. */
#define SIMULATED_CPLD "/run/cpld/watchdog/"

/* How often the watchdog was armed: once at the daemon's start and once by each check. */
extern long armings;

#endif
