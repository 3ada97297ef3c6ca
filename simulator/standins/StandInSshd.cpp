// Stands in for the SSH daemon: detaches and is there.
#include <unistd.h>

#include "simulator/standins/Announce.h"
#include "simulator/standins/Detachment.h"

int main() {
    Simulator::Detachment detachment;
    Simulator::Announce("sshd", "is up");
    detachment.Ready();
    while (true) {
        (void)pause();
    }
}
