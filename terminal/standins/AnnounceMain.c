/* Reports an event to the simulator, for scripts: announce SENDER TEXT */
#include "terminal/standins/Announce.h"

int main(int argc, char** argv) {
    if (argc == 3) {
        Announce(argv[1], argv[2]);
    }
}
