/* How programs inside the terminal tell the simulator what they do. */
#ifndef TERMINAL_STANDINS_ANNOUNCE_H
#define TERMINAL_STANDINS_ANNOUNCE_H

#ifdef __cplusplus
extern "C" {
#endif

/* Reports an event: the name of the sender and a text. */
void Announce(const char* who, const char* what);

#ifdef __cplusplus
}
#endif

#endif
