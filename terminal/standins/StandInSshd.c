/* Stands in for the SSH daemon: detaches and waits. */
#include <unistd.h>

#include "terminal/standins/Announce.h"

int main(void) {
    Announce("sshd", "is up");
    if (daemon(0, 0) != 0) {
        return 4;
    }
    for (;;) {
        (void)pause();
    }
}
