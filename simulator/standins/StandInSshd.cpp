// Stands in for the SSH daemon: detaches and is there.
#include <unistd.h>

#include "simulator/standins/Announce.h"

int main() {
    Detachment detachment;
    Announce("sshd", "is up");
    detachment.Ready();
    while (true) {
        (void)pause();
    }
}
